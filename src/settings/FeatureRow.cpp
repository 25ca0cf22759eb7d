// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/FeatureRow.hpp"

#include "settings/SwitchButton.hpp"
#include "views/Colors.hpp"
#include "views/Labels.hpp"

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace quillane {

namespace {

constexpr int tileSide = 30;
constexpr int symbolSide = 20;
constexpr double tileRadius = 7;

QPixmap tilePixmap(const QIcon& symbol, const QColor& fill, double scale) {
    QPixmap pixmap(QSize(tileSide, tileSide) * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(0, 0, tileSide, tileSide), tileRadius, tileRadius);
    const int inset = (tileSide - symbolSide) / 2;
    painter.drawPixmap(QRect(inset, inset, symbolSide, symbolSide),
                       symbol.pixmap(QSize(symbolSide, symbolSide) * scale));
    return pixmap;
}

} // namespace

FeatureRow::FeatureRow(QWidget* parent)
    : QWidget(parent),
      row_(new QHBoxLayout(this)),
      tile_(new QLabel),
      title_(textLabel()),
      explanation_(scaledLabel(0.9, false, "secondary")) {
    row_->setContentsMargins(14, 10, 14, 10);
    row_->setSpacing(12);
    tile_->setFixedSize(tileSide, tileSide);
    tile_->hide();
    explanation_->hide();
    auto* words = new QVBoxLayout;
    words->setSpacing(2);
    words->addStretch();
    words->addWidget(title_);
    words->addWidget(explanation_);
    words->addStretch();
    row_->addWidget(tile_);
    row_->addLayout(words, 1);
    auto policy = sizePolicy();
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void FeatureRow::setControl(QWidget* control) {
    row_->addWidget(control, 0, Qt::AlignVCenter);
}

SwitchButton& FeatureRow::addSwitch() {
    switch_ = new SwitchButton;
    setControl(switch_);
    return *switch_;
}

void FeatureRow::setTitle(const QString& text) {
    showText(*title_, text);
    if (switch_ != nullptr) {
        switch_->setAccessibleName(text);
    }
}

void FeatureRow::setExplanation(const QString& text) {
    showText(*explanation_, text);
    explanation_->setVisible(!text.isEmpty());
    if (switch_ != nullptr) {
        switch_->setAccessibleDescription(text);
    }
}

void FeatureRow::setSymbol(const QIcon& symbol, bool highlighted) {
    const auto appearance = currentAppearance();
    const auto fill =
        highlighted ? core::brandPalette::amber(appearance) : core::brandPalette::shades(appearance).selection;
    tile_->setVisible(!symbol.isNull());
    tile_->setPixmap(tilePixmap(symbol, qColor(fill), devicePixelRatioF()));
}

} // namespace quillane
