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

/// The appearance of the desktop at the moment.
[[nodiscard]] core::Appearance currentAppearance();

/// A style sheet in which a colour is written by its name, "%card": those of `brandPalette::Shades`, "%amber" and
/// "%primary".
[[nodiscard]] QString styleSheet(const char* ruleText, core::Appearance appearance);

/// What text fields, buttons and lists of the program's windows look like.
[[nodiscard]] QString controlsStyleSheet(core::Appearance appearance);

} // namespace quillane
