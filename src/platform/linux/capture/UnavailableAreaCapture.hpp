// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AreaCapture.hpp"

namespace quillane {

/// A compositor does not show the screen to ordinary programs (Wayland).
class UnavailableAreaCapture final : public AreaCapture {
public:
    [[nodiscard]] Means means() const override { return Means::none; }

    [[nodiscard]] bool start(core::AppLanguage, std::function<void()>) override { return false; }

    bool openShortcutSettings() override { return false; }
};

} // namespace quillane
