// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "direction/AX.hpp"

#include <algorithm>
#include <array>
#include <deque>

namespace quillane::AX {

namespace {

constexpr std::array<std::string_view, 6> alwaysSkipped{"AXWebArea", "AXTextArea", "AXTextField",
                                                        "AXTable",   "AXOutline",  "AXList"};

bool contains(std::span<const std::string_view> roles, std::string_view role) {
    return std::ranges::find(roles, role) != roles.end();
}

template <typename T>
std::optional<T> typed(Accessibility& accessibility, const AXElement& from, std::string_view attribute) {
    auto value = accessibility.attribute(from, attribute);
    auto* exact = value ? std::get_if<T>(&*value) : nullptr;
    return exact ? std::optional<T>(std::move(*exact)) : std::nullopt;
}

} // namespace

std::optional<AXElement> element(Accessibility& accessibility, const AXElement& from, std::string_view attribute) {
    return typed<AXElement>(accessibility, from, attribute);
}

std::optional<std::string> string(Accessibility& accessibility, const AXElement& from, std::string_view attribute) {
    return typed<std::string>(accessibility, from, attribute);
}

std::optional<bool> flag(Accessibility& accessibility, const AXElement& from, std::string_view attribute) {
    return typed<bool>(accessibility, from, attribute);
}

std::vector<AXElement> children(Accessibility& accessibility, const AXElement& of, std::string_view attribute) {
    return typed<std::vector<AXElement>>(accessibility, of, attribute).value_or(std::vector<AXElement>());
}

bool isTextWritable(Accessibility& accessibility, const AXElement& element) {
    return accessibility.isAttributeSettable(element, "AXValue") ||
           accessibility.isAttributeSettable(element, "AXSelectedText");
}

std::optional<AXElement> find(Accessibility& accessibility, const AXElement& root, std::size_t limit,
                              std::span<const std::string_view> skipping,
                              const std::function<bool(const AXElement&, std::string_view role)>& predicate) {
    std::deque<AXElement> queue{root};
    for (std::size_t visited = 0; visited < limit && !queue.empty(); ++visited) {
        const auto next = queue.front();
        queue.pop_front();
        const auto role = string(accessibility, next, "AXRole").value_or(std::string());
        if (predicate(next, role)) {
            return next;
        }
        if (!contains(alwaysSkipped, role) && !contains(skipping, role)) {
            std::ranges::copy(children(accessibility, next), std::back_inserter(queue));
        }
    }
    return std::nullopt;
}

} // namespace quillane::AX
