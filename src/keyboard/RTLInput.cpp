// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/RTLInput.hpp"

#include "core/direction/EditorContexts.hpp"
#include "core/keyboard/RTLInputLanguage.hpp"
#include "direction/AX.hpp"
#include "direction/Editors.hpp"

#include <array>
#include <chrono>
#include <utility>

namespace quillane {

namespace {

constexpr std::chrono::milliseconds messagingTimeout{15};

std::optional<std::string> text(const AXValue& value) {
    const auto* exact = std::get_if<std::string>(&value);
    return exact ? std::optional(*exact) : std::nullopt;
}

} // namespace

InputSourceSummary RTLInput::current() const {
    auto source = sources_.current();
    if (!source) {
        return {};
    }
    if (source->languages != known_.languages) {
        known_.isRTL = core::rtlInputLanguage::isRightToLeft(source->languages);
        known_.languages = std::move(source->languages);
    }
    return {std::move(source->localizedName), known_.isRTL};
}

bool RTLInput::hasEditableFocus(pid_t pid) const {
    const auto application = accessibility_.application(pid);
    accessibility_.setMessagingTimeout(application, messagingTimeout);
    const auto focused = ax::element(accessibility_, application, "AXFocusedUIElement");
    if (!focused) {
        return false;
    }
    accessibility_.setMessagingTimeout(*focused, messagingTimeout);
    constexpr std::array<std::string_view, 3> names{"AXRole", "AXSubrole", "AXEnabled"};
    const auto values = accessibility_.attributes(*focused, names);
    if (!values || values->size() != names.size()) {
        return false;
    }
    const auto role = text((*values)[0]).value_or(std::string());
    core::EditableInputContext context{.role = role,
                                       .subrole = text((*values)[1]),
                                       .enabled = ax::flag((*values)[2]).value_or(false),
                                       .valueIsSettable = accessibility_.isAttributeSettable(*focused, "AXValue")};
    context.selectedTextIsSettable =
        !context.valueIsSettable && accessibility_.isAttributeSettable(*focused, "AXSelectedText");
    if (context.isEligible()) {
        return true;
    }
    const auto front = workspace_.frontmostApplication();
    if (!front || front->pid != pid) {
        return false;
    }
    const auto* known = front->bundleID ? core::supportedApplication(*front->bundleID) : nullptr;
    return known != nullptr && core::isUnlikeTextFields(known->editor) &&
           isDirectionEditor(accessibility_, *focused, *known);
}

} // namespace quillane
