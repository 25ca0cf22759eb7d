// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Accessibility.hpp"

#include <algorithm>
#include <chrono>
#include <memory>
#include <type_traits>
#include <utility>

namespace quillane::bench {

/// Counts the calls that are passed on to another Accessibility, and their time, except during other waits.
class CountingAccessibility final : public Accessibility {
public:
    using Clock = std::chrono::steady_clock;

    explicit CountingAccessibility(std::unique_ptr<Accessibility> real) : owned_(std::move(real)) {}

    int calls = 0;
    Clock::duration time{};
    Clock::time_point waitsUntil; ///< for a delay that has begun

    AXElement application(pid_t pid) override { return real_.application(pid); }

    void setMessagingTimeout(const AXElement& element, std::chrono::milliseconds timeout) override {
        real_.setMessagingTimeout(element, timeout);
    }

    std::optional<AXValue> attribute(const AXElement& element, std::string_view name) override {
        return counted([&] { return real_.attribute(element, name); });
    }

    std::optional<std::vector<AXValue>> attributes(const AXElement& element,
                                                   std::span<const std::string_view> names) override {
        return counted([&] { return real_.attributes(element, names); });
    }

    [[nodiscard]] std::size_t elementsAtOnce() const override { return real_.elementsAtOnce(); }

    std::vector<std::optional<std::vector<AXValue>>>
    attributesOfEach(std::span<const AXElement> elements, std::span<const std::string_view> names) override {
        return counted([&] { return real_.attributesOfEach(elements, names); });
    }

    bool isAttributeSettable(const AXElement& element, std::string_view name) override {
        return counted([&] { return real_.isAttributeSettable(element, name); });
    }

    bool setAttribute(const AXElement& element, std::string_view name, const AXValue& value) override {
        return counted([&] { return real_.setAttribute(element, name, value); });
    }

    std::optional<std::string> textIn(const AXElement& element, const AXTextRange& range) override {
        return counted([&] { return real_.textIn(element, range); });
    }

    AXReplacement replaceText(const AXElement& element, const AXTextRange& range, const std::string& expected,
                              const std::string& text) override {
        return counted([&] { return real_.replaceText(element, range, expected, text); });
    }

    std::optional<AXRect> frame(const AXElement& element) override {
        return counted([&] { return real_.frame(element); });
    }

    std::optional<AXRect> frameOfText(const AXElement& element, const AXTextRange& range) override {
        return counted([&] { return real_.frameOfText(element, range); });
    }

    std::vector<std::string> actionNames(const AXElement& element) override {
        return counted([&] { return real_.actionNames(element); });
    }

    AXActionResult performAction(const AXElement& element, std::string_view name) override {
        return counted([&] { return real_.performAction(element, name); });
    }

    std::optional<core::Subscription> observe(const AXElement& application, std::string_view name,
                                              std::function<void(const AXElement&)> handler) override {
        return counted([&] { return real_.observe(application, name, std::move(handler)); });
    }

private:
    template <typename Call>
    std::invoke_result_t<Call> counted(Call call) {
        const auto begin = std::max(Clock::now(), waitsUntil);
        auto result = call();
        time += std::max(Clock::now() - begin, Clock::duration::zero());
        ++calls;
        return result;
    }

    std::unique_ptr<Accessibility> owned_;
    Accessibility& real_ = *owned_;
};

} // namespace quillane::bench
