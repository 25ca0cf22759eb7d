// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/localization/TextRow.hpp"

/// Every message of the program under a readable name: `texts::pauseAll`, `texts::keyboardLanguage(name)`,
/// `texts::keepMacAwake.on(desktop)`.
namespace quillane::core::texts {

#define QUILLANE_TEXT(name, hebrew, english, arabic) inline constexpr TextRow<placeholderCount(hebrew)> name{hebrew};
#define QUILLANE_NAME(name, text) inline constexpr TextRow<0> name{text};
#include "core/localization/AppTranslations.def"
#undef QUILLANE_NAME
#undef QUILLANE_TEXT

#define QUILLANE_TEXT(name, hebrew, english, arabic)
#define QUILLANE_NAME(name, text)
#define QUILLANE_ON_MACOS(name, hebrew, english, arabic)                                                               \
    inline constexpr DesktopTextRow<placeholderCount(hebrew)> name{name##OnMacOS, name##OnLinux};
#define QUILLANE_ON_LINUX(name, hebrew, english, arabic)
#include "core/localization/AppTranslations.def"
#undef QUILLANE_NAME
#undef QUILLANE_TEXT

} // namespace quillane::core::texts
