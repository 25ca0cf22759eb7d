// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Accessibility.hpp"
#include "platform/SecureInput.hpp"
#include "platform/Workspace.hpp"

#include <optional>

namespace quillane {

/// Looks at the keyboard focus in the application in front. An application that does not answer in time counts as one
/// without a password field.
class FocusSecureInput final : public SecureInput {
public:
    FocusSecureInput(Accessibility& accessibility, Workspace& workspace)
        : accessibility_(accessibility), workspace_(workspace) {}

    [[nodiscard]] bool isEnabled() override { return isPasswordFocused().value_or(false); }

    /// True also when no application is in front: then nothing is typed anywhere.
    [[nodiscard]] bool isKnown() override { return isPasswordFocused().has_value(); }

private:
    /// None when the application in front has no accessibility tree, announces no focus in it or does not answer.
    [[nodiscard]] std::optional<bool> isPasswordFocused();

    Accessibility& accessibility_;
    Workspace& workspace_;
};

} // namespace quillane
