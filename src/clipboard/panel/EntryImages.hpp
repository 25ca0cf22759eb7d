// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/panel/ImageDecoding.hpp"
#include "platform/MainQueue.hpp"
#include "platform/SerialQueue.hpp"

#include <QCache>
#include <QSet>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>

namespace quillane {

/// The pictures of entries, scaled down on a queue of their own and kept while there is room. Main thread.
///
///     EntryImages images(mainQueue, queue);
///     images.onReady = [&] { view.update(); };
///     if (const auto* picture = images.find(entry, size)) …
class EntryImages {
public:
    static constexpr qsizetype maximumBytes = 16 * 1024 * 1024;

    EntryImages(MainQueue& mainQueue, SerialQueue& queue);

    ~EntryImages() { dropPending(); }

    EntryImages(const EntryImages&) = delete;
    EntryImages& operator=(const EntryImages&) = delete;

    /// The entry's picture within this number of pixels; null while it is being made. Valid until the next call.
    [[nodiscard]] const DecodedImage* find(const core::ClipboardEntry& entry, QSize bound);

    /// Drops requests that are still pending, unless they are made again.
    void dropPending();

    /// The memory of all kept pictures.
    [[nodiscard]] qsizetype byteCount() const { return cache_.totalCost(); }

    [[nodiscard]] qsizetype pendingCount() const { return pending_.size(); }

    std::function<void()> onReady; ///< one more has been made

private:
    void finish(const QString& key, DecodedImage image);

    MainQueue& mainQueue_;
    SerialQueue& queue_;
    QCache<QString, DecodedImage> cache_{maximumBytes};
    QSet<QString> pending_;
    std::shared_ptr<std::atomic<bool>> dropped_ = std::make_shared<std::atomic<bool>>(false); ///< shared with requests
};

} // namespace quillane
