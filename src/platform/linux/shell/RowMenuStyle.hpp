// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

namespace quillane {

/// Draws the rows of a menu as the desktop's style does, with two exceptions: a checked row has its icon and, at the
/// other end, a check mark; and the key of a row reads from left to right in a right-to-left menu too.
class RowMenuStyle : public QProxyStyle {
public:
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

} // namespace quillane
