// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WindowTraits.hpp"

namespace quillane {

/// On Linux a program without windows shows nowhere, and a window shows in the task bar by itself: both policies are
/// what the desktop does anyway. Windows come to the front one by one (QWidget::activateWindow).
class LinuxWindowTraits final : public WindowTraits {
public:
    void setActivationPolicy(ActivationPolicy) override {}

    void activateApplication() override {}
};

} // namespace quillane
