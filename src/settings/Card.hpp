// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QVBoxLayout;

namespace quillane {

/// A rounded, lightly filled group of rows with thin lines between those that are shown.
class Card : public QWidget {
    Q_OBJECT

public:
    explicit Card(QWidget* parent = nullptr);

    /// Adds a row at the bottom; it gets the card's margins.
    void addRow(QWidget* row);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout* column_;
};

/// A row of a card that holds any layout with the card's margins.
[[nodiscard]] QWidget* cardRow(class QLayout* content);

} // namespace quillane
