// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFrame>

class QLabel;
class QToolButton;

namespace quillane {

/// A row above the list: what the user should know, and a button that does something about it.
class PanelNotice : public QFrame {
    Q_OBJECT

public:
    /// The widget's name; its button's name has "Button" appended.
    explicit PanelNotice(const char* name);

    [[nodiscard]] QToolButton& button() { return *button_; }

    void showTexts(const QString& text, const QString& buttonText);

private:
    QLabel* label_;
    QToolButton* button_;
};

} // namespace quillane
