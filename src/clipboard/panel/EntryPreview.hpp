// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/panel/EntryFiles.hpp"
#include "clipboard/panel/EntryImages.hpp"
#include "clipboard/panel/TextBlock.hpp"
#include "core/localization/AppLanguage.hpp"

#include <QWidget>

#include <optional>
#include <vector>

namespace quillane {

/// An entry shown large beside the panel while the pointer rests on its row. Takes neither the keyboard nor the
/// pointer.
class EntryPreview : public QWidget {
    Q_OBJECT

public:
    EntryPreview(EntryImages& images, EntryFiles& files, QWidget* parent);

    struct Place {
        QRect panel; ///< on the screen
        QRect row;   ///< on the screen
        QRect screen;
    };

    /// Shows the entry, a picture as soon as it has been decoded.
    void present(const core::ClipboardEntry& entry, const core::SearchQuery& query, core::AppLanguage language,
                 const Place& place);

    /// Another picture is ready.
    void imagesChanged();

    void dismiss();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Shown {
        core::ClipboardEntry entry;
        core::AppLanguage language{};
        Place place;
    };

    void layOut();
    void addText(const QString& text, const core::SearchQuery& query, int maximumLines);
    [[nodiscard]] QSize imageBounds() const;

    EntryImages& images_;
    EntryFiles& files_;
    std::optional<Shown> shown_;
    std::vector<TextBlock> blocks_; ///< one below the other
    QImage image_;
    QString line_; ///< below all
};

} // namespace quillane
