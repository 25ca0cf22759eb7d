// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/AppLanguage.hpp"
#include "core/settings/SettingsPage.hpp"

#include <QAbstractButton>

#include <functional>
#include <map>
#include <string>

namespace quillane {

/// One button of the selector: the page's symbol above its title.
class PageButton : public QAbstractButton {
    Q_OBJECT

public:
    explicit PageButton(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void checkStateSet() override;
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
};

/// The row of buttons for the pages; one is selected. Arrow keys move from one to the next.
class PageSelector : public QWidget {
    Q_OBJECT

public:
    using Symbol = std::function<QIcon(const std::string& name, const QColor& color)>;

    explicit PageSelector(Symbol symbol, QWidget* parent = nullptr);

    /// Shows the titles in a language and marks a page as selected.
    void show(core::SettingsPage page, core::AppLanguage language);

    using QWidget::show;

signals:
    void chosen(core::SettingsPage page);

private:
    Symbol symbol_;
    std::map<core::SettingsPage, PageButton*> buttons_;
};

} // namespace quillane
