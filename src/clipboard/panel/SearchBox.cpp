// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/SearchBox.hpp"

#include "clipboard/panel/Excerpt.hpp"
#include "views/Colors.hpp"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace quillane {

namespace {

constexpr int symbolSide = 18;
constexpr int buttonSymbolSide = 16;

} // namespace

SearchBox::SearchBox(PanelSymbols& symbols)
    : symbols_(symbols), symbol_(new QLabel), field_(new QLineEdit), clear_(new QToolButton) {
    setObjectName(QStringLiteral("searchBox"));
    field_->setObjectName(QStringLiteral("search"));
    field_->setFrame(false);
    field_->setContextMenuPolicy(Qt::NoContextMenu);
    field_->setMaxLength(1000);
    symbol_->setFixedSize(symbolSide, symbolSide);
    clear_->setObjectName(QStringLiteral("clear"));
    clear_->setFocusPolicy(Qt::TabFocus);
    clear_->setIconSize({buttonSymbolSide, buttonSymbolSide});
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(10, 0, 6, 0);
    row->setSpacing(8);
    row->addWidget(symbol_);
    row->addWidget(field_, 1);
    row->addWidget(clear_);
    connect(clear_, &QToolButton::clicked, field_, [this] {
        field_->clear();
        field_->setFocus();
    });
    connect(field_, &QLineEdit::textChanged, this, [this](const QString& text) { follow(text); });
    follow({});
}

void SearchBox::follow(const QString& text) {
    const auto direction = directionOf(text).value_or(layoutDirection());
    field_->setLayoutDirection(direction);
    // A field aligns its text by the text's direction, so the caret of an empty one would always be at the left.
    field_->setAlignment(Qt::AlignAbsolute | Qt::AlignVCenter |
                         (direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft));
    clear_->setVisible(!text.isEmpty());
}

void SearchBox::changeEvent(QEvent* event) {
    QFrame::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) {
        follow(field_->text());
    }
}

void SearchBox::redraw(const QString& placeholder, const QString& clearName) {
    const auto secondary = qColor(core::brandPalette::shades(currentAppearance()).secondary);
    symbol_->setPixmap(symbols_.pixmap("magnifyingglass", secondary, symbolSide, devicePixelRatioF()));
    auto colors = field_->palette();
    colors.setColor(QPalette::PlaceholderText, secondary);
    field_->setPalette(colors);
    field_->setPlaceholderText(placeholder);
    field_->setAccessibleName(placeholder);
    clear_->setIcon(symbols_.icon("xmark.circle", secondary));
    clear_->setToolTip(clearName);
    clear_->setAccessibleName(clearName);
}

} // namespace quillane
