// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Accessibility.hpp"
#include "platform/macos/accessibility/MacSilentProcesses.hpp"

namespace quillane {

/// Other applications through AXUIElement (ApplicationServices, AXUIElement.h). Needs the Accessibility permission;
/// without it every attribute is absent and every action fails. A process that does not answer (kAXErrorCannotComplete)
/// is not asked again for a while; actions are tried all the same.
class MacAccessibility final : public Accessibility {
public:
    explicit MacAccessibility(MacSilentProcesses::Now now = MacSilentProcesses::Clock::now);

    /// AXUIElementCreateApplication.
    [[nodiscard]] AXElement application(pid_t pid) override;

    /// AXUIElementSetMessagingTimeout, which the system keeps for one reference only; elements read from it inherit it
    /// here.
    void setMessagingTimeout(const AXElement& element, std::chrono::milliseconds timeout) override;

    /// AXUIElementCopyAttributeValue. A URL becomes its text; a value of a type that AXValue does not have is kept as
    /// an opaque one.
    [[nodiscard]] std::optional<AXValue> attribute(const AXElement& element, std::string_view name) override;

    /// AXUIElementCopyMultipleAttributeValues, which returns an error value for each missing attribute.
    [[nodiscard]] std::optional<std::vector<AXValue>> attributes(const AXElement& element,
                                                                 std::span<const std::string_view> names) override;

    [[nodiscard]] bool isAnswering(const AXElement& element) override;

    /// AXUIElementIsAttributeSettable.
    [[nodiscard]] bool isAttributeSettable(const AXElement& element, std::string_view name) override;

    /// AXUIElementSetAttributeValue, for flags, texts, elements, text ranges and values read before.
    bool setAttribute(const AXElement& element, std::string_view name, const AXValue& value) override;

    /// "AXPosition" and "AXSize".
    [[nodiscard]] std::optional<AXRect> frame(const AXElement& element) override;

    /// AXUIElementCopyParameterizedAttributeValue, "AXBoundsForRange".
    [[nodiscard]] std::optional<AXRect> frameOfText(const AXElement& element, const AXTextRange& range) override;
    [[nodiscard]] std::optional<std::string> textIn(const AXElement& element, const AXTextRange& range) override;
    [[nodiscard]] AXReplacement replaceText(const AXElement& element, const AXTextRange& range,
                                            const std::string& expected, const std::string& text) override;

    /// AXUIElementCopyActionNames.
    [[nodiscard]] std::vector<std::string> actionNames(const AXElement& element) override;

    /// AXUIElementPerformAction, which returns kAXErrorCannotComplete while a menu is shown.
    AXActionResult performAction(const AXElement& element, std::string_view name) override;

    /// AXObserverCreate and AXObserverAddNotification, with its source in the common modes of the main run loop.
    [[nodiscard]] std::optional<core::Subscription> observe(const AXElement& application, std::string_view name,
                                                            std::function<void(const AXElement&)> handler) override;

private:
    MacSilentProcesses silent_;
};

} // namespace quillane
