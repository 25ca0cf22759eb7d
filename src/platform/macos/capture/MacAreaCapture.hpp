// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AreaCapture.hpp"

namespace quillane {

/// The system's own area screenshot, started by its shortcut (Quartz Event Services). Needs the Accessibility
/// permission. There is no way to see whether the shortcut is turned off.
class MacAreaCapture final : public AreaCapture {
public:
    [[nodiscard]] Means means() const override { return Means::systemShortcut; }

    [[nodiscard]] bool start(core::AppLanguage language, std::function<void()> keptOut) override;
    bool openShortcutSettings() override;
};

} // namespace quillane
