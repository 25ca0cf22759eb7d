// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractButton>

namespace quillane {

/// A switch: a pill with a knob at its trailing end when it is on. It mirrors in right-to-left layouts.
class SwitchButton : public QAbstractButton {
    Q_OBJECT

public:
    explicit SwitchButton(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

    [[nodiscard]] bool hitButton(const QPoint& point) const override { return rect().contains(point); }
};

} // namespace quillane
