// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/direction/SupportedApplication.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace quillane::core {

/// A focused element as Accessibility describes it: whether text can be typed there. Password fields never count.
struct EditableInputContext {
    std::string role;                    ///< "AXRole"
    std::optional<std::string> subrole;  ///< "AXSubrole", when there is one
    bool enabled = false;                ///< "AXEnabled"
    bool valueIsSettable = false;        ///< of "AXValue"
    bool selectedTextIsSettable = false; ///< of "AXSelectedText"

    [[nodiscard]] bool isEligible() const;
};

/// An editable field of a web page: its value must be settable, and a web area must be among its ancestors.
struct WebEditorContext {
    std::string role;
    std::optional<std::string> subrole;
    bool enabled = false;
    bool valueIsSettable = false;
    bool insideWebArea = false;

    [[nodiscard]] bool isEligible() const;
};

/// The subject line and the body of a Mail message that is being written.
struct MailEditorContext {
    static constexpr std::string_view subjectIdentifier = "Mail.subjectField";

    std::string_view role;
    std::optional<std::string_view> identifier;  ///< "AXIdentifier"
    std::optional<std::string_view> description; ///< "AXDescription"
    bool enabled = false;
    bool writable = false;
    bool composeWindow = false; ///< a message is written in the window, not read

    [[nodiscard]] bool isEligible() const;
};

/// The page of a Word document, which Word describes as "Page 12 content".
struct WordEditorContext {
    std::string_view role;
    std::optional<std::string_view> description;
    bool writable = false;

    [[nodiscard]] bool isEligible() const;
};

/// The text view of a document, in an application whose row names its identifier.
struct DocumentEditorContext {
    const SupportedApplication& application;
    std::optional<std::string_view> identifier;
    EditableInputContext input;

    [[nodiscard]] bool isEligible() const;
};

} // namespace quillane::core
