// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/panel/Excerpt.hpp"

#include <QColor>
#include <QFont>
#include <QRect>

class QPainter;

namespace quillane {

/// A few lines of text in the direction of their first strong character, independent of what is around them. What does
/// not fit ends with an ellipsis.
struct TextBlock {
    /// Where lines begin.
    enum class Alignment {
        natural,   ///< on the side of the text's own direction
        interface, ///< with everything else
    };

    Excerpt content;
    QFont font;
    QColor color;
    Qt::LayoutDirection interface = Qt::LeftToRight; ///< the surrounding direction
    int maximumLines = 1;
    Alignment alignment = Alignment::natural;
    Qt::LayoutDirection neutral = Qt::LeftToRight; ///< of text without a direction, such as a telephone number
    bool struck = false;

    /// The line spacing, whatever fonts the scripts use.
    [[nodiscard]] static int lineHeight(const QFont& font);

    /// Draws at the top of the rectangle and returns the used height.
    int draw(QPainter& painter, const QRect& rect) const;

    /// Its size within the width.
    [[nodiscard]] QSize size(int width) const;
};

} // namespace quillane
