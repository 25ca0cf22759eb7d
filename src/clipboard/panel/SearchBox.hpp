// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/panel/PanelSymbols.hpp"

#include <QFrame>

class QLabel;
class QLineEdit;
class QToolButton;

namespace quillane {

/// The search field with its symbol and a button that clears it. Typed text runs in its own direction; symbol and
/// button stay where the interface language puts them.
class SearchBox : public QFrame {
    Q_OBJECT

public:
    explicit SearchBox(PanelSymbols& symbols);

    [[nodiscard]] QLineEdit& field() { return *field_; }

    [[nodiscard]] QToolButton& clearButton() { return *clear_; }

    /// Sets the texts in the interface language, and the colours of the current appearance.
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
