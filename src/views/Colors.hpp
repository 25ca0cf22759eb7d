// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/settings/BrandPalette.hpp"

#include <QColor>
#include <QString>

class QPalette;

namespace quillane {

[[nodiscard]] inline QColor qColor(core::Color color) {
    return {color.red, color.green, color.blue};
}

/// Whether windows with this palette are dark.
[[nodiscard]] core::Appearance appearanceOf(const QPalette& palette);

/// The current appearance of the desktop.
[[nodiscard]] core::Appearance currentAppearance();

/// A style sheet in which a colour is written by its name, "%card": those of `brandPalette::Shades`, "%amber" and
/// "%primary".
[[nodiscard]] QString styleSheet(const char* ruleText, core::Appearance appearance);

/// The style of text fields, buttons and lists in the program's windows.
[[nodiscard]] QString controlsStyleSheet(core::Appearance appearance);

} // namespace quillane
