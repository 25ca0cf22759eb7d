// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Accessibility.hpp"

namespace quillane {

/// Other applications by AXUIElement (ApplicationServices, AXUIElement.h). Needs the Accessibility permission; without
/// it every reading is absent.
class MacAccessibility final : public Accessibility {
public:
    /// AXUIElementCreateApplication.
    [[nodiscard]] AXElement application(pid_t pid) override;

    /// AXUIElementSetMessagingTimeout, which the system keeps for one reference only; elements read from it get it too.
    void setMessagingTimeout(const AXElement& element, std::chrono::milliseconds timeout) override;

    /// AXUIElementCopyAttributeValue. A value of a type that AXValue does not have counts as absent.
    [[nodiscard]] std::optional<AXValue> attribute(const AXElement& element, std::string_view name) override;

    /// AXUIElementCopyMultipleAttributeValues, which puts an error value in the place of each missing attribute.
    [[nodiscard]] std::optional<std::vector<AXValue>> attributes(const AXElement& element,
                                                                 std::span<const std::string_view> names) override;

    /// AXUIElementIsAttributeSettable.
    [[nodiscard]] bool isAttributeSettable(const AXElement& element, std::string_view name) override;
};

} // namespace quillane
