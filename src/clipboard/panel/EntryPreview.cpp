// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/EntryPreview.hpp"

#include "clipboard/panel/EntryTexts.hpp"
#include "core/localization/DateText.hpp"
#include "views/Colors.hpp"
#include "views/Text.hpp"

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace quillane {

namespace {

constexpr int padding = 14;
constexpr int distance = 8; ///< from the panel
constexpr int maximumTextWidth = 420;
constexpr int maximumImageSide = 480;
constexpr int maximumLines = 22;
constexpr int maximumParagraphLines = 12;
constexpr qsizetype maximumCharacters = 4000;
constexpr int lineGap = 8;

QString copiedAt(const core::ClipboardEntry& entry, core::AppLanguage language) {
    return isolated(QString::fromStdString(core::dateText(entry.copiedAt, language)));
}

/// Where a window of this size fits beside the panel: on the side where reading continues, or else on the other one.
QPoint beside(const EntryPreview::Place& place, QSize size, Qt::LayoutDirection direction) {
    const int right = place.panel.right() + 1 + distance;
    const int left = place.panel.left() - distance - size.width();
    const bool fitsRight = right + size.width() <= place.screen.right() + 1;
    const bool fitsLeft = left >= place.screen.left();
    const bool wantsRight = direction == Qt::LeftToRight;
    const bool goesRight = wantsRight ? fitsRight || !fitsLeft : fitsRight && !fitsLeft;
    const int x = std::clamp(goesRight ? right : left, place.screen.left(),
                             std::max(place.screen.left(), place.screen.right() + 1 - size.width()));
    const int y = std::clamp(place.row.top(), place.screen.top(),
                             std::max(place.screen.top(), place.screen.bottom() + 1 - size.height()));
    return {x, y};
}

} // namespace

EntryPreview::EntryPreview(EntryImages& images, EntryFiles& files, QWidget* parent)
    : QWidget(parent, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus),
      images_(images),
      files_(files) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setObjectName(QStringLiteral("preview"));
}

QSize EntryPreview::imageBounds() const {
    return (QSizeF(maximumImageSide, maximumImageSide) * devicePixelRatioF()).toSize();
}

void EntryPreview::addText(const QString& text, const core::SearchQuery& query, int lines) {
    const auto appearance = currentAppearance();
    TextBlock block{wholeText(text, query), font(), qColor(core::brandPalette::primary(appearance)), layoutDirection(),
                    lines};
    blocks_.push_back(std::move(block));
}

void EntryPreview::present(const core::ClipboardEntry& entry, const core::SearchQuery& query,
                           core::AppLanguage language, const Place& place) {
    shown_ = Shown{entry, language, place};
    setLayoutDirection(directionOf(language));
    blocks_.clear();
    image_ = {};
    if (entry.kind == core::ClipboardKind::text) {
        const auto text = QString::fromStdString(*entry.text).left(maximumCharacters);
        for (const auto& paragraph : text.split(QLatin1Char('\n')).mid(0, maximumLines)) {
            addText(paragraph.trimmed(), query, maximumParagraphLines);
        }
    } else if (entry.kind == core::ClipboardKind::files) {
        for (const auto& file : files_.paths(entry)) {
            if (std::ssize(blocks_) < maximumLines) {
                addText(QString::fromStdString(file.string()), query, 3);
            }
        }
    }
    layOut();
}

void EntryPreview::imagesChanged() {
    if (shown_ && shown_->entry.kind == core::ClipboardKind::image && image_.isNull()) {
        layOut();
    }
}

void EntryPreview::layOut() {
    const auto& entry = shown_->entry;
    QSize pixels;
    if (entry.kind == core::ClipboardKind::image) {
        const auto* found = images_.find(entry, imageBounds());
        if (found == nullptr || found->image.isNull()) {
            hide();
            return;
        }
        image_ = found->image;
        pixels = found->original;
    }
    const auto state = entry.kind == core::ClipboardKind::files ? files_.state(entry) : EntryFiles::State::present;
    line_ =
        sourceLine(entry, pixels, state, shown_->language) + QStringLiteral(" · ") + copiedAt(entry, shown_->language);
    int lines = maximumLines;
    const int lineHeight = TextBlock::lineHeight(font());
    QSize size(std::min(fontMetrics().horizontalAdvance(line_) + 2, maximumTextWidth), 0);
    std::size_t kept = 0;
    for (; kept < blocks_.size() && lines > 0; ++kept) {
        auto& block = blocks_[kept];
        block.maximumLines = std::min(block.maximumLines, lines);
        const auto taken = block.size(maximumTextWidth);
        lines -= std::max(1, taken.height() / lineHeight);
        size = {std::max(size.width(), taken.width()), size.height() + std::max(taken.height(), lineHeight)};
    }
    blocks_.resize(kept);
    if (!image_.isNull()) {
        const auto shown = (QSizeF(image_.size()) / devicePixelRatioF()).toSize();
        size = {std::max(size.width(), shown.width()), size.height() + shown.height()};
    }
    resize(size.width() + 2 * padding, size.height() + lineGap + lineHeight + 2 * padding);
    move(beside(shown_->place, this->size(), layoutDirection()));
    show();
    update();
}

void EntryPreview::dismiss() {
    shown_.reset();
    hide();
}

void EntryPreview::paintEvent(QPaintEvent* /*event*/) {
    if (!shown_) {
        return;
    }
    const auto appearance = currentAppearance();
    const auto& shades = core::brandPalette::shades(appearance);
    QPainter painter(this);
    painter.fillRect(rect(), qColor(shades.card));
    painter.setPen(qColor(shades.outline));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    auto content = rect().adjusted(padding, padding, -padding, -padding);
    for (const auto& block : blocks_) {
        content.setTop(content.top() + std::max(block.draw(painter, content), fontMetrics().height()));
    }
    if (!image_.isNull()) {
        const auto size = (QSizeF(image_.size()) / devicePixelRatioF()).toSize();
        const QRect frame = QStyle::alignedRect(layoutDirection(), Qt::AlignHCenter | Qt::AlignTop, size, content);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(frame, image_);
        content.setTop(frame.bottom() + 1);
    }
    content.setTop(content.top() + lineGap);
    const TextBlock line{{line_, {}},       font(), qColor(shades.secondary),
                         layoutDirection(), 1,      TextBlock::Alignment::interface,
                         layoutDirection()};
    line.draw(painter, content);
}

} // namespace quillane
