// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/panel/PanelSymbols.hpp"

#include <QFrame>

class QLabel;
class QLineEdit;
class QToolButton;

namespace quillane {

/// The search field with its symbol and a button that clears it. What is typed runs in its own direction; symbol and
/// button stay where the language of the interface has them.
class SearchBox : public QFrame {
    Q_OBJECT

public:
    explicit SearchBox(PanelSymbols& symbols);

    [[nodiscard]] QLineEdit& field() { return *field_; }

    [[nodiscard]] QToolButton& clearButton() { return *clear_; }

    /// The texts in the language of the interface, and colours of the appearance of the moment.
    void redraw(const QString& placeholder, const QString& clearName);

protected:
    void changeEvent(QEvent* event) override;

private:
    void follow(const QString& text);

    PanelSymbols& symbols_;
    QLabel* symbol_;
    QLineEdit* field_;
    QToolButton* clear_;
};

} // namespace quillane
