// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>
#include <QStringList>

namespace quillane {

/// A few paragraphs of help in a window above a button. Not a tool tip: that opens over the clicked button and closes
/// as soon as the pointer is above it.
class HelpCard : public QLabel {
public:
    explicit HelpCard(QWidget* parent);

    /// Paragraphs of plain text, in the direction of the interface.
    void setParagraphs(const QStringList& paragraphs, Qt::LayoutDirection direction);

    /// Shows the card above the widget, or below where there is no room.
    void showBeside(const QWidget& widget);
};

} // namespace quillane
