// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/panel/Excerpt.hpp"

#include <QColor>
#include <QFont>
#include <QRect>

class QPainter;

namespace quillane {

/// A few lines of text in the direction of their own first strong character, so that nothing around them has a part in
/// it. What does not fit ends with an ellipsis.
struct TextBlock {
    /// Where lines begin.
    enum class Alignment {
        natural,   ///< on the side of the text's own direction
        interface, ///< with everything else
    };

    Excerpt content;
    QFont font;
    QColor color;
    Qt::LayoutDirection interface = Qt::LeftToRight; ///< the direction of what is around
    int mostLines = 1;
    Alignment alignment = Alignment::natural;
    Qt::LayoutDirection neutral = Qt::LeftToRight; ///< of text without a direction, such as a telephone number
    bool struck = false;

    /// The distance of lines, whatever fonts their scripts take.
    [[nodiscard]] static int lineHeight(const QFont& font);

    /// Draws at the top of the rectangle and returns the height that was taken.
    int draw(QPainter& painter, const QRect& rect) const;

    /// The size that it takes in the width.
    [[nodiscard]] QSize size(int width) const;
};

} // namespace quillane
