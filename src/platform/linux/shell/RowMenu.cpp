// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/shell/RowMenu.hpp"

#include "platform/linux/shell/LineArtSymbols.hpp"

#include <QAction>
#include <QEvent>
#include <QKeySequence>

#include <algorithm>
#include <utility>

namespace quillane {

namespace {

QIcon iconFor(const MenuRow& row, const QColor& color) {
    switch (row.icon) {
    case MenuRow::Icon::application:
        return applicationIcon();
    case MenuRow::Icon::symbol:
        return symbolIcon(row.symbol, color);
    case MenuRow::Icon::none:
        break;
    }
    return {};
}

void showRow(QAction& action, const MenuRow& row) {
    if (row.kind == MenuRow::Kind::separator) {
        return;
    }
    // An ampersand would name a mnemonic.
    action.setText(QString::fromStdString(row.title).replace(QLatin1Char('&'), QStringLiteral("&&")));
    action.setToolTip(QString::fromStdString(row.toolTip));
    action.setEnabled(row.enabled && row.kind == MenuRow::Kind::item);
    action.setCheckable(row.checkable);
    action.setChecked(row.checked);
    action.setShortcut(row.keyEquivalent.empty()
                           ? QKeySequence()
                           : QKeySequence(QStringLiteral("Ctrl+") + QString::fromStdString(row.keyEquivalent)));
}

} // namespace

RowMenu::RowMenu() {
    setStyle(&style_);
    setToolTipsVisible(true);
    connect(this, &QMenu::aboutToShow, this, [this] {
        if (!std::exchange(iconsDrawn_, true)) {
            drawIcons();
        }
    });
}

void RowMenu::setRows(std::vector<MenuRow> rows, LayoutDirection direction) {
    setLayoutDirection(direction == LayoutDirection::rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    const bool sameKinds = std::ranges::equal(rows, rows_, {}, &MenuRow::kind, &MenuRow::kind);
    const bool sameIcons = sameKinds && std::ranges::equal(rows, rows_, [](const auto& left, const auto& right) {
                               return left.icon == right.icon && left.symbol == right.symbol;
                           });
    if (!sameKinds) {
        rebuild(rows);
    }
    rows_ = std::move(rows);
    for (std::size_t index = 0; index < rows_.size(); ++index) {
        showRow(*actions()[static_cast<qsizetype>(index)], rows_[index]);
    }
    if (iconsDrawn_ && !sameIcons) {
        drawIcons();
    }
}

void RowMenu::rebuild(const std::vector<MenuRow>& rows) {
    clear();
    for (std::size_t index = 0; index < rows.size(); ++index) {
        QAction* action = rows[index].kind == MenuRow::Kind::separator ? addSeparator() : addAction(QString());
        connect(action, &QAction::triggered, this, [this, index] {
            if (const auto chosen = rows_[index].action) { // a copy: the action may replace the rows
                chosen();
            }
        });
    }
}

void RowMenu::drawIcons() {
    for (std::size_t index = 0; index < rows_.size(); ++index) {
        actions()[static_cast<qsizetype>(index)]->setIcon(iconFor(rows_[index], palette().color(QPalette::Text)));
    }
}

void RowMenu::changeEvent(QEvent* event) {
    QMenu::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && iconsDrawn_) {
        drawIcons();
    }
}

} // namespace quillane
