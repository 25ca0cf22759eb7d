// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

namespace quillane {

/// Whether the user is typing a secret. Main thread. May wait for the application in front, at most 50 ms.
class SecureInput {
public:
    virtual ~SecureInput() = default;

    /// True while a password is being typed: IsSecureEventInputEnabled on macOS; elsewhere, while the keyboard focus is
    /// on a password field.
    [[nodiscard]] virtual bool isEnabled() = 0;

    /// Whether `isEnabled` can know. False while the application in front is not asked or does not say what has the
    /// focus there: a password typed in it is then not recognized. Always true on macOS.
    [[nodiscard]] virtual bool isKnown() = 0;
};

} // namespace quillane
