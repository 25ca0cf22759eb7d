// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "fakes/FakeWindowTraits.hpp"

#include <QWidget>

namespace quillane::fakes {

void FakeWindowTraits::makePanel(QWidget& window, PanelKind kind) {
    panels.emplace_back(&window, kind);
    // Offscreen, as in tests, Qt gives the keyboard to every window but a tool tip.
    window.setWindowFlags((kind == PanelKind::search ? Qt::Tool : Qt::ToolTip | Qt::WindowDoesNotAcceptFocus) |
                          Qt::FramelessWindowHint);
}

} // namespace quillane::fakes
