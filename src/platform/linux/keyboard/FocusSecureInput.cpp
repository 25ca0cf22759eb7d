// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/keyboard/FocusSecureInput.hpp"

#include <chrono>
#include <string>
#include <variant>

namespace quillane {

namespace {

constexpr std::chrono::milliseconds patience{25}; // for each of two questions

} // namespace

bool FocusSecureInput::isEnabled() {
    const auto front = workspace_.frontmostApplication();
    if (!front) {
        return false;
    }
    const auto application = accessibility_.application(front->pid);
    accessibility_.setMessagingTimeout(application, patience);
    const auto focused = accessibility_.attribute(application, "AXFocusedUIElement");
    const auto* element = focused ? std::get_if<AXElement>(&*focused) : nullptr;
    if (element == nullptr) {
        return false;
    }
    accessibility_.setMessagingTimeout(*element, patience);
    const auto subrole = accessibility_.attribute(*element, "AXSubrole");
    const auto* name = subrole ? std::get_if<std::string>(&*subrole) : nullptr;
    return name != nullptr && *name == "AXSecureTextField";
}

} // namespace quillane
