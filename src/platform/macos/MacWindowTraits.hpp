// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WindowTraits.hpp"

namespace quillane {

class MacWindowTraits final : public WindowTraits {
public:
    /// NSApplication.activationPolicy.
    void setActivationPolicy(ActivationPolicy policy) override;
    void activateApplication() override;
};

} // namespace quillane
