// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

namespace quillane {

/// A label of plain text that wraps, with lines that begin flush in every script. QLabel shifts a wrapped right-to-left
/// line by the width of the blank at its end.
class WrappingLabel : public QLabel {
public:
    explicit WrappingLabel(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillane
