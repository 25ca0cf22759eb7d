// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/direction/EditorContexts.hpp"

#include <algorithm>
#include <array>

#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace quillane::core {

namespace {

constexpr std::array<std::string_view, 3> editableRoles{"AXTextField", "AXTextArea", "AXComboBox"};

bool isEditableRole(std::string_view role, const std::optional<std::string>& subrole) {
    return std::ranges::find(editableRoles, role) != editableRoles.end() && subrole != "AXSecureTextField";
}

/// Not empty, and only characters with a numeric value (Unicode property Numeric_Type).
bool isNumeric(std::string_view utf8) {
    const auto text =
        icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<std::int32_t>(utf8.size())));
    for (std::int32_t index = 0; index < text.length(); index = text.moveIndex32(index, 1)) {
        if (u_getIntPropertyValue(text.char32At(index), UCHAR_NUMERIC_TYPE) == U_NT_NONE) {
            return false;
        }
    }
    return !text.isEmpty();
}

} // namespace

bool EditableInputContext::isEligible() const {
    return isEditableRole(role, subrole) && enabled && (valueIsSettable || selectedTextIsSettable);
}

bool WebEditorContext::isEligible() const {
    return isEditableRole(role, subrole) && enabled && valueIsSettable && insideWebArea;
}

bool MailEditorContext::isEligible() const {
    if (!enabled || !writable || !composeWindow) {
        return false;
    }
    return (role == "AXTextField" && identifier == subjectIdentifier) ||
           (role == "AXWebArea" && description == "message body");
}

bool WordEditorContext::isEligible() const {
    constexpr std::string_view before = "Page ";
    constexpr std::string_view after = " content";
    return role == "AXTextArea" && writable && description && description->size() > before.size() + after.size() &&
           description->starts_with(before) && description->ends_with(after) &&
           isNumeric(description->substr(before.size(), description->size() - before.size() - after.size()));
}

bool DocumentEditorContext::isEligible() const {
    return application.editor == EditorRule::document && identifier == application.editorIdentifier &&
           input.role == "AXTextArea" && input.isEligible();
}

} // namespace quillane::core
