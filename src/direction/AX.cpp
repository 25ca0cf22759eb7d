// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "direction/AX.hpp"

#include <algorithm>
#include <array>
#include <deque>

namespace quillane::ax {

namespace {

constexpr std::array<std::string_view, 6> alwaysSkipped{"AXWebArea", "AXTextArea", "AXTextField",
                                                        "AXTable",   "AXOutline",  "AXList"};

constexpr std::string_view childrenName = "AXChildren";

constexpr int maximumSteps = 32; // up to an ancestor

bool contains(std::span<const std::string_view> roles, std::string_view role) {
    return std::ranges::find(roles, role) != roles.end();
}

void append(std::deque<AXElement>& queue, const AXValue& children) {
    if (const auto* elements = std::get_if<std::vector<AXElement>>(&children)) {
        std::ranges::copy(*elements, std::back_inserter(queue));
    }
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

std::optional<bool> flag(const AXValue& value) {
    if (const auto* exact = std::get_if<bool>(&value)) {
        return *exact;
    }
    const auto* number = std::get_if<std::int64_t>(&value);
    return number != nullptr && (*number == 0 || *number == 1) ? std::optional(*number == 1) : std::nullopt;
}

std::optional<bool> flag(Accessibility& accessibility, const AXElement& from, std::string_view attribute) {
    const auto value = accessibility.attribute(from, attribute);
    return value ? flag(*value) : std::nullopt;
}

std::vector<AXElement> children(Accessibility& accessibility, const AXElement& of, std::string_view attribute) {
    return typed<std::vector<AXElement>>(accessibility, of, attribute).value_or(std::vector<AXElement>());
}

std::optional<AXElement> firstOfRole(Accessibility& accessibility, const std::vector<AXElement>& elements,
                                     std::string_view role) {
    constexpr std::array<std::string_view, 1> roleName{"AXRole"};
    const auto read = accessibility.attributesOfEach(elements, roleName);
    const auto found = std::ranges::find_if(
        read, [&](const auto& values) { return values && values->front() == AXValue(std::string(role)); });
    return found != read.end() ? std::optional(elements.at(static_cast<std::size_t>(found - read.begin())))
                               : std::nullopt;
}

std::vector<std::string> labels(Accessibility& accessibility, const std::vector<AXElement>& elements) {
    std::vector<std::string> titles;
    for (const auto& values : accessibility.attributesOfEach(elements, labelNames)) {
        const auto text = [&](std::size_t index) {
            return values ? std::get_if<std::string>(&values->at(index)) : nullptr;
        };
        const auto* title = text(0) != nullptr ? text(0) : text(1);
        titles.push_back(title != nullptr ? *title : std::string());
    }
    return titles;
}

bool isTextWritable(Accessibility& accessibility, const AXElement& element) {
    return accessibility.isAttributeSettable(element, "AXValue") ||
           accessibility.isAttributeSettable(element, "AXSelectedText");
}

bool matches(Accessibility& accessibility, const AXElement& element, const core::Labels& label) {
    return std::ranges::any_of(labelNames, [&](std::string_view name) {
        const auto text = string(accessibility, element, name);
        return text && label.matches(*text);
    });
}

bool press(Accessibility& accessibility, const AXElement& element) {
    return flag(accessibility, element, "AXEnabled") != false &&
           accessibility.performAction(element, "AXPress") == AXActionResult::done;
}

bool isDescendant(Accessibility& accessibility, const AXElement& element, const AXElement& ancestor) {
    std::optional<AXElement> step = element;
    for (int count = 0; step && count < maximumSteps; ++count) {
        if (*step == ancestor) {
            return true;
        }
        step = ax::element(accessibility, *step, "AXParent");
    }
    return false;
}

std::optional<AXElement> closest(Accessibility& accessibility, const AXElement& from, std::string_view role,
                                 std::size_t steps) {
    std::optional<AXElement> step = from;
    for (std::size_t count = 0; step && count < steps; ++count) {
        if (string(accessibility, *step, "AXRole") == role) {
            return step;
        }
        step = element(accessibility, *step, "AXParent");
    }
    return std::nullopt;
}

std::optional<std::string_view> Candidate::text(std::string_view name) const {
    const auto found = std::ranges::find(names, name);
    const auto index = static_cast<std::size_t>(found - names.begin());
    const auto* value = index < values.size() ? std::get_if<std::string>(&values[index]) : nullptr;
    return value != nullptr ? std::optional<std::string_view>(*value) : std::nullopt;
}

bool Candidate::isLabelled(const core::Labels& label) const {
    return std::ranges::any_of(labelNames, [&](std::string_view name) {
        const auto value = text(name);
        return value && label.matches(*value);
    });
}

TreeSearch::State TreeSearch::step(Accessibility& accessibility,
                                   const std::function<bool(const Candidate&)>& predicate) {
    const auto count = std::min({accessibility.elementsAtOnce(), search_.limit - visited_, queue_.size()});
    if (result_ || count == 0) {
        return result_ ? State::found : State::notFound;
    }
    std::vector<std::string_view> names{"AXRole"};
    std::ranges::copy(search_.reading, std::back_inserter(names));
    // Where each element costs a call, its children come with it; where many share one wait, only the children that
    // are looked into are asked for.
    const bool withChildren = accessibility.elementsAtOnce() == 1;
    if (withChildren) {
        names.push_back(childrenName);
    }
    const std::vector<AXElement> next(queue_.begin(), queue_.begin() + static_cast<std::ptrdiff_t>(count));
    queue_.erase(queue_.begin(), queue_.begin() + static_cast<std::ptrdiff_t>(count));
    visited_ += count;
    const auto read = accessibility.attributesOfEach(next, names);
    std::vector<AXElement> parents;
    for (std::size_t index = 0; index < count; ++index) {
        if (!read[index] && !accessibility.isAnswering(next[index])) {
            return State::unanswered; // the next question would have to wait as well
        }
        const auto values = read[index].value_or(std::vector<AXValue>(names.size()));
        const auto* role = std::get_if<std::string>(&values.front());
        const Candidate candidate{next[index], role != nullptr ? std::string_view(*role) : std::string_view(),
                                  search_.reading, std::span(values).subspan(1, search_.reading.size())};
        if (predicate(candidate)) {
            result_ = next[index];
            return State::found;
        }
        if (contains(alwaysSkipped, candidate.role) || contains(search_.skipping, candidate.role)) {
            continue;
        }
        if (withChildren) {
            append(queue_, values.back());
        } else {
            parents.push_back(next[index]);
        }
    }
    for (const auto& list : accessibility.attributesOfEach(parents, std::span(&childrenName, 1))) {
        if (list) {
            append(queue_, list->front());
        }
    }
    return State::searching;
}

std::optional<AXElement> find(Accessibility& accessibility, const AXElement& root, const Search& search,
                              const std::function<bool(const Candidate&)>& predicate) {
    TreeSearch tree(root, search);
    while (tree.step(accessibility, predicate) == TreeSearch::State::searching) {
    }
    return tree.result();
}

std::optional<AXElement> find(Accessibility& accessibility, const AXElement& root, std::size_t limit,
                              std::span<const std::string_view> skipping,
                              const std::function<bool(const AXElement&, std::string_view role)>& predicate) {
    return find(accessibility, root, Search{.limit = limit, .skipping = skipping, .reading = {}},
                [&](const Candidate& candidate) { return predicate(candidate.element, candidate.role); });
}

} // namespace quillane::ax
