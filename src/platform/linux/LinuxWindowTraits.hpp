// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WindowTraits.hpp"

namespace quillane {

/// On Linux a program without windows shows nowhere, and a window shows in the task bar by itself: both policies are
/// what the desktop does anyway.
class LinuxWindowTraits final : public WindowTraits {
public:
    void setActivationPolicy(ActivationPolicy) override {}
};

} // namespace quillane
