// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Accessibility.hpp"
#include "platform/SecureInput.hpp"
#include "platform/Workspace.hpp"

namespace quillane {

/// Looks at the keyboard focus in the application in front. An application that does not answer in time counts as one
/// without a password field.
class FocusSecureInput final : public SecureInput {
public:
    FocusSecureInput(Accessibility& accessibility, Workspace& workspace)
        : accessibility_(accessibility), workspace_(workspace) {}

    [[nodiscard]] bool isEnabled() override;

private:
    Accessibility& accessibility_;
    Workspace& workspace_;
};

} // namespace quillane
