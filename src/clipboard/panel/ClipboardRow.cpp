// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/ClipboardRow.hpp"

#include "clipboard/panel/EntryTexts.hpp"
#include "clipboard/panel/TextBlock.hpp"
#include "core/clipboard/ClipboardPanelKeys.hpp"
#include "core/localization/NumberText.hpp"
#include "core/localization/Texts.hpp"
#include "views/Colors.hpp"
#include "views/Text.hpp"

#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <algorithm>

namespace quillane {

namespace {

constexpr int sideMargin = 8; ///< between the edge of the list and the background of a selected row
constexpr int padding = 9;
constexpr int tileSide = 28;
constexpr int tileSymbol = 17;
constexpr int gap = 10;
constexpr int minimumMarksWidth = 34;
constexpr int pinSide = 14;
constexpr int lineGap = 2;
constexpr int maximumTextLines = 2;
constexpr int maximumFileLines = 3;
constexpr int numberedRows = 9;
constexpr qreal rowRadius = 8;
constexpr qreal tileRadius = 7;
constexpr qreal imageRadius = 5;
constexpr qreal smaller = 0.86;

QFont smallFont(QFont font) {
    font.setPointSizeF(font.pointSizeF() * smaller);
    return font;
}

QColor mixed(const QColor& a, const QColor& b, double part) {
    const auto mix = [&](int x, int y) { return static_cast<int>(x * (1 - part) + y * part); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

QString keyOf(int row, core::Desktop desktop) {
    return QString::fromStdString(core::clipboardPanelKeys::pasteKey(static_cast<std::size_t>(row), desktop));
}

} // namespace

/// One row while it is drawn.
struct ClipboardRow::Drawing {
    QPainter& painter;
    const core::ClipboardEntry& entry;
    int row;
    Qt::LayoutDirection direction;
    core::AppLanguage language;
    QFont font;
    QColor primary;
    QColor secondary;
    QColor tile;
    QColor symbol;
    QColor outline;
    EntryFiles::State files;
    QSize pixels; ///< the picture's own size

    [[nodiscard]] qreal ratio() const { return painter.device()->devicePixelRatioF(); }
};

ClipboardRow::ClipboardRow(const ClipboardListModel& list, EntryImages& images, EntryFiles& files,
                           PanelSymbols& symbols, core::Desktop desktop, QObject* parent)
    : QStyledItemDelegate(parent), list_(list), images_(images), files_(files), symbols_(symbols), desktop_(desktop) {}

QSize ClipboardRow::imageBounds(int width, qreal ratio) const {
    return (QSizeF(width, imageHeight_) * ratio).toSize();
}

const ClipboardRow::Metrics& ClipboardRow::metrics(const QFont& font) const {
    if (metrics_.lineHeight == 0 || metrics_.font != font) {
        const QFontMetrics small(smallFont(font));
        metrics_ = {font, TextBlock::lineHeight(font), TextBlock::lineHeight(smallFont(font)),
                    std::max(1, QFontMetrics(font).averageCharWidth()),
                    std::max(minimumMarksWidth, small.horizontalAdvance(keyOf(numberedRows - 1, desktop_)))};
    }
    return metrics_;
}

int ClipboardRow::contentWidth(const QFont& font, int rowWidth) const {
    return rowWidth - 2 * (sideMargin + padding) - tileSide - 2 * gap - metrics(font).marksWidth;
}

int ClipboardRow::contentHeight(const QFont& font, const core::ClipboardEntry& entry, int width) const {
    const auto& measures = metrics(font);
    const int below = lineGap + measures.smallLineHeight;
    if (entry.kind == core::ClipboardKind::image) {
        return imageHeight_ + 2 * lineGap + below;
    }
    int lines = 1;
    if (entry.kind == core::ClipboardKind::files) {
        lines = std::clamp(static_cast<int>(std::ranges::count(*entry.text, '\n')) + 1, 1, maximumFileLines);
    } else {
        const auto fitting = width / measures.characterWidth;
        lines = excerptLength(*entry.text, fitting + 1) > fitting ? maximumTextLines : 1;
    }
    return lines * measures.lineHeight + below;
}

QSize ClipboardRow::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const int width = option.rect.width();
    const int content = contentHeight(option.font, list_.entry(index.row()), contentWidth(option.font, width));
    return {0, std::max(content, tileSide) + 2 * padding};
}

void ClipboardRow::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    ++drawn_;
    const auto& entry = list_.entry(index.row());
    const auto appearance = currentAppearance();
    const auto& shades = core::brandPalette::shades(appearance);
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const bool hovered = option.state.testFlag(QStyle::State_MouseOver);
    const auto amber = qColor(core::brandPalette::amber(appearance));
    const auto onAmber = qColor(shades.onAmber);
    const auto state = entry.kind == core::ClipboardKind::files ? files_.state(entry) : EntryFiles::State::present;
    Drawing drawing{*painter,
                    entry,
                    index.row(),
                    option.direction,
                    list_.language(),
                    option.font,
                    selected ? onAmber : qColor(core::brandPalette::primary(appearance)),
                    selected ? mixed(onAmber, amber, 0.12) : qColor(shades.secondary),
                    selected ? mixed(amber, onAmber, 0.16) : qColor(shades.card),
                    selected ? onAmber : amber,
                    selected ? mixed(amber, onAmber, 0.2) : qColor(shades.hairline),
                    state,
                    {}};
    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const auto ground = option.rect.adjusted(sideMargin, 1, -sideMargin, -1);
    if (selected || hovered) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(selected ? amber : qColor(shades.selection));
        painter->drawRoundedRect(ground, rowRadius, rowRadius);
    }
    const int width = contentWidth(option.font, option.rect.width());
    const int height = contentHeight(option.font, entry, width);
    const auto inner = ground.adjusted(padding, 0, -padding, 0);
    const int top = option.rect.top() + (option.rect.height() - height) / 2;
    const auto placed = [&](int left, int y, int w, int h) { // counted from the start of lines
        return QStyle::visualRect(option.direction, inner, QRect(inner.left() + left, y, w, h));
    };
    const int tileTop = height > 3 * tileSide ? top : option.rect.top() + (option.rect.height() - tileSide) / 2;
    drawTile(drawing, placed(0, tileTop, tileSide, tileSide));
    const auto content = placed(tileSide + gap, top, width, height);
    if (state == EntryFiles::State::gone) {
        painter->setOpacity(0.62);
    }
    int used = 0;
    switch (entry.kind) {
    case core::ClipboardKind::text:
        used = drawText(drawing, content);
        break;
    case core::ClipboardKind::image:
        if (const auto* image = images_.find(entry, imageBounds(width, drawing.ratio()))) {
            drawing.pixels = image->original;
        }
        used = drawImage(drawing, content);
        break;
    case core::ClipboardKind::files:
        used = drawFiles(drawing, content);
        break;
    }
    painter->setOpacity(1);
    const auto line = sourceLine(entry, drawing.pixels, state, list_.language());
    const TextBlock source{
        wholeText(line, list_.query(index.row())), smallFont(option.font), drawing.secondary, option.direction, 1,
        TextBlock::Alignment::interface,           option.direction};
    source.draw(*painter, content.adjusted(0, used + lineGap, 0, 0));
    const int marksWidth = metrics(option.font).marksWidth;
    drawMarks(drawing, placed(inner.width() - marksWidth, ground.top(), marksWidth, ground.height()));
    painter->restore();
}

int ClipboardRow::drawText(const Drawing& drawing, const QRect& rect) const {
    auto shown = excerpt(*drawing.entry.text, list_.query(drawing.row));
    auto color = drawing.primary;
    if (shown.text.isEmpty()) {
        shown = {rendered(core::texts::blankText, drawing.language), {}};
        color = drawing.secondary;
    }
    const int lineHeight = TextBlock::lineHeight(drawing.font);
    const int lines = (rect.height() - lineGap - TextBlock::lineHeight(smallFont(drawing.font))) / lineHeight;
    const TextBlock block{std::move(shown), drawing.font, color, drawing.direction, std::max(1, lines)};
    const int missing = lines * lineHeight - block.size(rect.width()).height();
    const int below = std::max(0, missing / 2);
    return below + block.draw(drawing.painter, rect.adjusted(0, below, 0, 0));
}

int ClipboardRow::drawImage(const Drawing& drawing, const QRect& rect) const {
    auto& painter = drawing.painter;
    const auto* found = images_.find(drawing.entry, imageBounds(rect.width(), drawing.ratio()));
    QSize size(imageHeight_ * 4 / 3, imageHeight_);
    if (found != nullptr && !found->image.isNull()) {
        size = (QSizeF(found->image.size()) / drawing.ratio()).toSize().expandedTo(QSize(1, 1));
    }
    QRect frame(rect.topLeft(), size);
    frame.moveTop(rect.top() + (imageHeight_ - size.height()) / 2);
    frame = QStyle::visualRect(drawing.direction, rect, frame);
    QPainterPath rounded;
    rounded.addRoundedRect(frame, imageRadius, imageRadius);
    painter.setPen(Qt::NoPen);
    painter.setBrush(drawing.tile);
    painter.drawPath(rounded);
    if (found == nullptr || found->image.isNull()) {
        if (found != nullptr) { // it cannot be shown
            const int side = std::min(imageHeight_ / 2, 24);
            const auto symbol = symbols_.pixmap("photo", drawing.secondary, side, drawing.ratio());
            painter.drawPixmap(QStyle::alignedRect(drawing.direction, Qt::AlignCenter, {side, side}, frame), symbol);
        }
    } else {
        painter.save();
        painter.setClipPath(rounded);
        painter.drawImage(frame, found->image);
        painter.restore();
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(drawing.outline, 1));
    painter.drawPath(rounded);
    return imageHeight_ + 2 * lineGap;
}

int ClipboardRow::drawFiles(const Drawing& drawing, const QRect& rect) const {
    const auto names = fileNames(drawing.entry);
    const QFontMetrics metrics(drawing.font);
    const int lineHeight = TextBlock::lineHeight(drawing.font);
    const int shown = std::min(static_cast<int>(names.size()), maximumFileLines);
    for (int i = 0; i < shown; ++i) {
        const bool isLast = i + 1 == maximumFileLines && names.size() > maximumFileLines;
        const auto more = static_cast<int>(names.size()) - i;
        const auto name =
            isLast ? rendered(core::texts::andMoreFiles(core::numberText(more, drawing.language)), drawing.language)
                   : metrics.elidedText(names[i].simplified(), Qt::ElideMiddle, rect.width());
        const TextBlock block{wholeText(name, isLast ? core::SearchQuery({}) : list_.query(drawing.row)),
                              drawing.font,
                              isLast ? drawing.secondary : drawing.primary,
                              drawing.direction,
                              1,
                              TextBlock::Alignment::interface,
                              isLast ? drawing.direction : Qt::LeftToRight,
                              drawing.files == EntryFiles::State::gone};
        block.draw(drawing.painter, rect.adjusted(0, i * lineHeight, 0, 0));
    }
    return std::max(1, shown) * lineHeight;
}

void ClipboardRow::drawTile(const Drawing& drawing, const QRect& rect) const {
    const char* name = "doc.text";
    if (drawing.entry.kind == core::ClipboardKind::image) {
        name = "photo";
    } else if (drawing.entry.kind == core::ClipboardKind::text) {
        const auto head = excerpt(*drawing.entry.text, core::SearchQuery({})).text;
        name = directionOf(head).value_or(drawing.direction) == Qt::RightToLeft ? "text.alignright" : "text.alignleft";
    } else if (drawing.files == EntryFiles::State::folder) {
        name = "folder";
    } else if (drawing.entry.items->size() > 1) {
        name = "rectangle.on.rectangle";
    }
    auto& painter = drawing.painter;
    painter.setPen(QPen(drawing.outline, 1));
    painter.setBrush(drawing.tile);
    painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), tileRadius, tileRadius);
    painter.drawPixmap(QStyle::alignedRect(drawing.direction, Qt::AlignCenter, {tileSymbol, tileSymbol}, rect),
                       symbols_.pixmap(name, drawing.symbol, tileSymbol, drawing.ratio()));
}

void ClipboardRow::drawMarks(const Drawing& drawing, const QRect& rect) const {
    auto& painter = drawing.painter;
    const auto font = smallFont(drawing.font);
    const int textHeight = QFontMetrics(font).height();
    const bool isNumbered = drawing.row < numberedRows;
    const int height = (drawing.entry.pinned ? pinSide : 0) + (isNumbered ? textHeight : 0);
    int y = rect.top() + (rect.height() - height) / 2;
    if (drawing.entry.pinned) {
        const QRect line(rect.left(), y, rect.width(), pinSide);
        painter.drawPixmap(
            QStyle::alignedRect(drawing.direction, Qt::AlignRight | Qt::AlignVCenter, {pinSide, pinSide}, line),
            symbols_.pixmap("pin.fill", drawing.symbol, pinSide, drawing.ratio()));
        y += pinSide;
    }
    if (isNumbered) {
        painter.setFont(font);
        painter.setPen(drawing.secondary);
        painter.setLayoutDirection(Qt::LeftToRight); // keys have the same names everywhere
        const auto side = drawing.direction == Qt::RightToLeft ? Qt::AlignLeft : Qt::AlignRight;
        painter.drawText(QRect(rect.left(), y, rect.width(), textHeight), static_cast<int>(side | Qt::AlignVCenter),
                         keyOf(drawing.row, desktop_));
    }
}

} // namespace quillane
