// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/applications/TerminalFocus.hpp"

#include <array>
#include <chrono>
#include <string>
#include <variant>

namespace quillane {

namespace {

constexpr std::chrono::milliseconds messagingTimeout{25}; // for each of two questions

std::string textOf(const AXValue& value) {
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr ? *text : std::string();
}

} // namespace

ShortcutStyle TerminalFocus::styleIn(pid_t pid) const {
    std::string identifier;
    if (const auto front = workspace_.frontmostApplication(); front && front->pid == pid) {
        identifier = front->bundleID.value_or(std::string());
    }
    std::vector<AXValue> values(2);
    const auto application = accessibility_.application(pid);
    accessibility_.setMessagingTimeout(application, messagingTimeout);
    const auto focused = accessibility_.attribute(application, "AXFocusedUIElement");
    if (const auto* element = focused ? std::get_if<AXElement>(&*focused) : nullptr) {
        constexpr std::array<std::string_view, 2> names{"AXRole", "AXSubrole"};
        accessibility_.setMessagingTimeout(*element, messagingTimeout);
        values = accessibility_.attributes(*element, names).value_or(values);
    }
    const auto role = textOf(values[0]);
    const auto subrole = textOf(values[1]);
    return terminalShortcuts::styleOf({.role = role,
                                       .subrole = subrole,
                                       .application = identifier,
                                       .inTerminal = installed_->index().isTerminal(identifier)});
}

} // namespace quillane
