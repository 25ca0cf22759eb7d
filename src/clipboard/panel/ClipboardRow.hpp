// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/panel/ClipboardListModel.hpp"
#include "clipboard/panel/EntryFiles.hpp"
#include "clipboard/panel/EntryImages.hpp"
#include "clipboard/panel/PanelSymbols.hpp"
#include "core/localization/Desktop.hpp"

#include <QFont>
#include <QStyledItemDelegate>

namespace quillane {

/// Draws one entry: its contents, its source, whether it is pinned, and the key that pastes it. Rows are drawn when
/// they come into view; the others cost nothing.
class ClipboardRow : public QStyledItemDelegate {
    Q_OBJECT

public:
    ClipboardRow(const ClipboardListModel& list, EntryImages& images, EntryFiles& files, PanelSymbols& symbols,
                 core::Desktop desktop, QObject* parent);

    /// The height of pictures, in points.
    void setImageHeight(int height) { imageHeight_ = height; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    /// The number of times that rows have been drawn.
    [[nodiscard]] int drawnCount() const { return drawn_; }

private:
    struct Drawing;

    /// The measures that make up the heights of rows.
    struct Metrics {
        QFont font;
        int lineHeight = 0;
        int smallLineHeight = 0;
        int characterWidth = 1;
        int marksWidth = 0; ///< width of the pin and the key that pastes an entry
    };

    int drawText(const Drawing& drawing, const QRect& rect) const;
    int drawImage(const Drawing& drawing, const QRect& rect) const;
    int drawFiles(const Drawing& drawing, const QRect& rect) const;
    void drawTile(const Drawing& drawing, const QRect& rect) const;
    void drawMarks(const Drawing& drawing, const QRect& rect) const;
    [[nodiscard]] const Metrics& metrics(const QFont& font) const;
    [[nodiscard]] int contentWidth(const QFont& font, int rowWidth) const;
    [[nodiscard]] int contentHeight(const QFont& font, const core::ClipboardEntry& entry, int width) const;
    [[nodiscard]] QSize imageBounds(int width, qreal ratio) const;

    const ClipboardListModel& list_;
    EntryImages& images_;
    EntryFiles& files_;
    PanelSymbols& symbols_;
    core::Desktop desktop_;
    int imageHeight_ = 60;
    mutable Metrics metrics_; ///< for the last font
    mutable int drawn_ = 0;
};

} // namespace quillane
