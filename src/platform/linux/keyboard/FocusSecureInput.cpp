// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/keyboard/FocusSecureInput.hpp"

#include <array>
#include <chrono>
#include <string>
#include <string_view>
#include <variant>

namespace quillane {

namespace {

constexpr std::chrono::milliseconds messagingTimeout{25}; // for each of two questions

} // namespace

std::optional<bool> FocusSecureInput::isPasswordFocused() {
    const auto front = workspace_.frontmostApplication();
    if (!front) {
        return false;
    }
    const auto application = accessibility_.application(front->pid);
    accessibility_.setMessagingTimeout(application, messagingTimeout);
    const auto focused = accessibility_.attribute(application, "AXFocusedUIElement");
    const auto* element = focused ? std::get_if<AXElement>(&*focused) : nullptr;
    if (element == nullptr) {
        return std::nullopt;
    }
    accessibility_.setMessagingTimeout(*element, messagingTimeout);
    constexpr std::array<std::string_view, 1> names{"AXSubrole"};
    const auto subrole = accessibility_.attributes(*element, names);
    if (!subrole) {
        return std::nullopt;
    }
    const auto* name = std::get_if<std::string>(&subrole->front());
    return name != nullptr && *name == "AXSecureTextField";
}

} // namespace quillane
