// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/WindowTraits.hpp"

namespace quillane {

class MacWindowTraits final : public WindowTraits {
public:
    [[nodiscard]] KeyNumbering keyNumbering() const override { return KeyNumbering::macOS; }

    /// NSApplication.activationPolicy.
    void setActivationPolicy(ActivationPolicy policy) override;
    void activateApplication() override;

    /// The NSPanel behind the widget: non-activating, floating, joining spaces (NSWindow.styleMask, level,
    /// collectionBehavior).
    void makePanel(QWidget& window, PanelKind kind) override;
};

} // namespace quillane
