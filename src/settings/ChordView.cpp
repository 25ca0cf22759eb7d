// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/ChordView.hpp"

#include "core/localization/Texts.hpp"
#include "views/Colors.hpp"
#include "views/Text.hpp"

#include <QPainter>

#include <algorithm>
#include <utility>

namespace quillane {

namespace texts = core::texts;

namespace {

constexpr int padding = 9;
constexpr int gap = 18; ///< between keys, with the plus sign in it
constexpr double radius = 6;
constexpr double sideScale = 0.72;

} // namespace

core::LocalizedText ChordKey::spoken() const {
    switch (side) {
    case Side::left:
        return texts::leftKey(name);
    case Side::right:
        return texts::rightKey(name);
    case Side::any:
        break;
    }
    return name;
}

ChordView::ChordView(std::vector<ChordKey> keys, QWidget* parent) : QWidget(parent), keys_(std::move(keys)) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setLanguage(core::AppLanguage::english);
}

void ChordView::setLanguage(core::AppLanguage language) {
    const auto text = [&](const core::LocalizedText& localized) { return rendered(localized, language); };
    caps_.clear();
    QStringList spoken;
    for (const auto& key : keys_) {
        const auto sign = QString::fromStdString(key.sign);
        caps_.push_back({sign.isEmpty() ? text(key.name) : sign + QLatin1Char(' ') + text(key.name),
                         key.side == ChordKey::Side::left    ? text(texts::sideLeft)
                         : key.side == ChordKey::Side::right ? text(texts::sideRight)
                                                             : QString()});
        spoken.append(text(key.spoken()));
    }
    setAccessibleName(spoken.join(QStringLiteral(" + ")));
    updateGeometry();
    update();
}

QFont ChordView::sideFont() const {
    auto small = font();
    small.setPointSizeF(small.pointSizeF() * sideScale);
    return small;
}

int ChordView::capWidth(const Cap& cap) const {
    const int words =
        std::max(fontMetrics().horizontalAdvance(cap.label), QFontMetrics(sideFont()).horizontalAdvance(cap.side));
    return std::max(words + 2 * padding, capHeight());
}

int ChordView::capHeight() const {
    const bool hasSides = std::ranges::any_of(caps_, [](const Cap& cap) { return !cap.side.isEmpty(); });
    return fontMetrics().height() + (hasSides ? QFontMetrics(sideFont()).height() : 0) + 8;
}

QSize ChordView::sizeHint() const {
    int width = static_cast<int>(caps_.size() - 1) * gap;
    for (const auto& cap : caps_) {
        width += capWidth(cap);
    }
    return {width + 2, capHeight() + 3};
}

void ChordView::paintEvent(QPaintEvent*) {
    const auto appearance = currentAppearance();
    const auto& shades = core::brandPalette::shades(appearance);
    const auto ink = qColor(core::brandPalette::primary(appearance));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    double x = 0.5;
    for (const auto& cap : caps_) {
        if (x > 1) {
            painter.setFont(font());
            painter.setPen(qColor(shades.secondary));
            painter.drawText(QRectF(x, 0, gap, capHeight()), Qt::AlignCenter, QStringLiteral("+"));
            x += gap;
        }
        const QRectF key(x, 0.5, capWidth(cap), capHeight());
        painter.setPen(Qt::NoPen);
        painter.setBrush(qColor(shades.outline));
        painter.drawRoundedRect(key.translated(0, 1.5), radius, radius); // the key's front edge
        painter.setPen(qColor(shades.outline));
        painter.setBrush(qColor(shades.field));
        painter.drawRoundedRect(key, radius, radius);
        painter.setPen(ink);
        painter.setFont(font());
        auto words = key.adjusted(0, 3, 0, -3);
        if (!cap.side.isEmpty()) {
            painter.setFont(sideFont());
            painter.setPen(qColor(shades.secondary));
            painter.drawText(words, Qt::AlignHCenter | Qt::AlignTop, cap.side);
            painter.setFont(font());
            painter.setPen(ink);
            painter.drawText(words, Qt::AlignHCenter | Qt::AlignBottom, cap.label);
        } else {
            painter.drawText(words, Qt::AlignCenter, cap.label);
        }
        x += key.width();
    }
}

} // namespace quillane
