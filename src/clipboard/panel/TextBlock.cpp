// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/TextBlock.hpp"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace quillane {

namespace {

constexpr QChar ellipsis(0x2026);

/// A layout of the block's text, whose line breaks are kept.
class Lines {
public:
    Lines(const TextBlock& block, QString text, int width)
        : layout_(text.replace(QLatin1Char('\n'), QChar::LineSeparator), block.font), width_(width) {
        QTextOption option;
        const auto direction = directionOf(layout_.text());
        option.setTextDirection(direction.value_or(block.neutral));
        const auto side =
            block.alignment == TextBlock::Alignment::interface ? block.interface : direction.value_or(block.interface);
        option.setAlignment(Qt::AlignAbsolute | (side == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft));
        option.setWrapMode(block.maximumLines == 1 ? QTextOption::WrapAnywhere
                                                   : QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout_.setTextOption(option);
        QList<QTextLayout::FormatRange> formats;
        QTextCharFormat base;
        base.setFontStrikeOut(block.struck);
        base.setForeground(block.color);
        formats.push_back({0, static_cast<int>(layout_.text().size()), base});
        for (const auto& range : block.content.bold) {
            const auto length = std::min(range.length, layout_.text().size() - range.begin);
            if (length > 0) {
                auto format = base;
                format.setFontWeight(QFont::Bold);
                formats.push_back({static_cast<int>(range.begin), static_cast<int>(length), format});
            }
        }
        layout_.setFormats(formats);
        breakLines(block.maximumLines, block.font);
    }

    /// Where the text continues after the last line.
    [[nodiscard]] qsizetype end() const { return end_; }

    [[nodiscard]] QTextLayout& layout() { return layout_; }

    [[nodiscard]] QSize size() const {
        return {static_cast<int>(std::ceil(used_)), static_cast<int>(std::ceil(height_))};
    }

private:
    void breakLines(int maximumLines, const QFont& font) {
        const auto ascent = QFontMetricsF(font).ascent();
        layout_.beginLayout();
        for (int number = 0; number < maximumLines; ++number) {
            auto line = layout_.createLine();
            if (!line.isValid()) {
                break;
            }
            line.setLineWidth(width_);
            line.setPosition({0, height_ + ascent - line.ascent()}); // equally spaced baselines
            height_ += TextBlock::lineHeight(font);
            used_ = std::max(used_, line.naturalTextWidth());
            end_ = line.textStart() + line.textLength();
        }
        layout_.endLayout();
    }

    QTextLayout layout_;
    qreal width_;
    qreal height_ = 0;
    qreal used_ = 0;
    qsizetype end_ = 0;
};

/// The text with an ellipsis at the end of the last line when it does not fit.
QString fitted(const TextBlock& block, int width) {
    const auto& text = block.content.text;
    Lines lines(block, text, width);
    if (lines.end() >= text.size()) {
        return text;
    }
    auto kept = text.left(lines.end()).trimmed();
    const auto end = [&](const QString& shortened) { return Lines(block, shortened, width).end(); };
    while (!kept.isEmpty() && end(kept + ellipsis) < kept.size() + 1) {
        kept.chop(kept.size() > 1 && kept.back().isLowSurrogate() ? 2 : 1);
    }
    return kept + ellipsis;
}

} // namespace

int TextBlock::lineHeight(const QFont& font) {
    return static_cast<int>(std::ceil(QFontMetricsF(font).height() * 1.08));
}

int TextBlock::draw(QPainter& painter, const QRect& rect) const {
    Lines lines(*this, fitted(*this, rect.width()), rect.width());
    lines.layout().draw(&painter, rect.topLeft());
    return lines.size().height();
}

QSize TextBlock::size(int width) const {
    return Lines(*this, fitted(*this, width), width).size();
}

} // namespace quillane
