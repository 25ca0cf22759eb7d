// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"

#include <QString>

namespace quillane {

[[nodiscard]] inline QString rendered(const core::LocalizedText& text, core::AppLanguage language) {
    return QString::fromStdString(text.rendered(language));
}

/// The direction in which a window in this language is laid out.
[[nodiscard]] inline Qt::LayoutDirection directionOf(core::AppLanguage language) {
    return core::isRTL(language) ? Qt::RightToLeft : Qt::LeftToRight;
}

} // namespace quillane
