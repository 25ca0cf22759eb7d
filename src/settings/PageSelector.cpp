// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/PageSelector.hpp"

#include "core/localization/Texts.hpp"
#include "views/Colors.hpp"
#include "views/Text.hpp"

#include <QAccessible>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>

#include <utility>

namespace quillane {

namespace {

constexpr int symbolSide = 24;
constexpr int padding = 8;
constexpr int space = 3;
constexpr double radius = 8;

} // namespace

PageButton::PageButton(QWidget* parent) : QAbstractButton(parent) {
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize PageButton::sizeHint() const {
    return {std::max(fontMetrics().horizontalAdvance(text()), symbolSide) + 2 * padding,
            symbolSide + space + fontMetrics().height() + 2 * padding};
}

void PageButton::checkStateSet() {
    QAbstractButton::checkStateSet();
    QAccessible::State changed;
    changed.selected = 1;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

void PageButton::paintEvent(QPaintEvent*) {
    const auto appearance = currentAppearance();
    const auto& shades = core::brandPalette::shades(appearance);
    const auto amber = qColor(core::brandPalette::amber(appearance));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto area = QRectF(rect()).adjusted(2, 2, -2, -2);
    if (isChecked() || isDown() || underMouse()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(qColor(shades.selection));
        painter.setOpacity(isChecked() || isDown() ? 1 : 0.5);
        painter.drawRoundedRect(area, radius, radius);
        painter.setOpacity(1);
    }
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(amber, 2));
        painter.drawRoundedRect(area.adjusted(-1, -1, 1, 1), radius + 1, radius + 1);
    }
    const QRect place((width() - symbolSide) / 2, padding, symbolSide, symbolSide);
    icon().paint(&painter, place);
    painter.setPen(qColor(isChecked() ? core::brandPalette::primary(appearance) : shades.secondary));
    painter.drawText(QRect(0, padding + symbolSide + space, width(), fontMetrics().height()), Qt::AlignCenter, text());
}

void PageButton::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    update();
}

void PageButton::leaveEvent(QEvent* event) {
    QAbstractButton::leaveEvent(event);
    update();
}

PageSelector::PageSelector(Symbol symbol, QWidget* parent) : QWidget(parent), symbol_(std::move(symbol)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    auto* group = new QButtonGroup(this); // one is selected, and arrow keys move between them
    for (const auto page : core::allSettingsPages) {
        auto* button = new PageButton;
        buttons_[page] = button;
        group->addButton(button);
        row->addWidget(button);
        connect(button, &QAbstractButton::clicked, this, [this, page] { emit chosen(page); });
        connect(button, &QAbstractButton::toggled, this, [this, page](bool on) {
            if (on) {
                emit chosen(page); // by an arrow key as well
            }
        });
    }
}

void PageSelector::show(core::SettingsPage page, core::AppLanguage language) {
    const auto appearance = currentAppearance();
    setAccessibleName(rendered(core::texts::settingsPages, language));
    for (const auto& [own, button] : buttons_) {
        const QSignalBlocker quiet(button);
        button->setChecked(own == page);
        button->setText(rendered(core::title(own), language));
        button->updateGeometry();
        const auto color =
            own == page ? core::brandPalette::amber(appearance) : core::brandPalette::shades(appearance).secondary;
        button->setIcon(symbol_ ? symbol_(std::string(core::symbol(own)), qColor(color)) : QIcon());
    }
}

} // namespace quillane
