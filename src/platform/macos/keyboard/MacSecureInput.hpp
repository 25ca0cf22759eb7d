// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SecureInput.hpp"

namespace quillane {

/// Secure keyboard input, which password fields and terminals turn on (Carbon, IsSecureEventInputEnabled).
class MacSecureInput final : public SecureInput {
public:
    [[nodiscard]] bool isEnabled() override;

    [[nodiscard]] bool isKnown() override { return true; }
};

} // namespace quillane
