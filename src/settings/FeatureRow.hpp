// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

#include <functional>
#include <string>

class QHBoxLayout;
class QIcon;
class QLabel;

namespace quillane {

class SwitchButton;

/// A row of a card: a symbol on a tile, a title with an explanation below, and a control at the trailing end.
class FeatureRow : public QWidget {
    Q_OBJECT

public:
    explicit FeatureRow(QWidget* parent = nullptr);

    /// Puts a control at the trailing end.
    void setControl(QWidget* control);

    /// A switch as the control; it carries the row's title and explanation for assistive technologies.
    SwitchButton& addSwitch();

    void setTitle(const QString& text);

    /// Hidden while it is empty.
    void setExplanation(const QString& text);

    /// Draws the symbol; a highlighted tile means that the feature is on. No tile for a null icon.
    void setSymbol(const QIcon& symbol, bool highlighted);

private:
    QHBoxLayout* row_;
    QLabel* tile_;
    QLabel* title_;
    QLabel* explanation_;
    SwitchButton* switch_ = nullptr;
};

} // namespace quillane
