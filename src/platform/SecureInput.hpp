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
};

} // namespace quillane
