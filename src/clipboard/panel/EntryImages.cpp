// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/EntryImages.hpp"

#include <utility>

namespace quillane {

EntryImages::EntryImages(MainQueue& mainQueue, SerialQueue& queue) : mainQueue_(mainQueue), queue_(queue) {}

const DecodedImage* EntryImages::find(const core::ClipboardEntry& entry, QSize bound) {
    const auto key =
        QStringLiteral("%1 %2 %3").arg(QString::fromStdString(entry.digest)).arg(bound.width()).arg(bound.height());
    if (const auto* image = cache_.object(key)) {
        return image;
    }
    if (!pending_.contains(key)) {
        pending_.insert(key);
        queue_.post([this, key, bound, items = entry.items, dropped = dropped_, &main = mainQueue_] {
            if (dropped->load()) {
                return;
            }
            auto image = decodeImage(*items, bound);
            // This object may be destroyed meanwhile. It is used on the main thread only, where its destructor drops
            // the requests.
            main.post([this, key, dropped, image = std::move(image)]() mutable {
                if (!dropped->load()) {
                    finish(key, std::move(image));
                }
            });
        });
    }
    return nullptr;
}

void EntryImages::finish(const QString& key, DecodedImage image) {
    pending_.remove(key);
    const auto bytes = image.image.sizeInBytes() + static_cast<qsizetype>(sizeof image);
    cache_.insert(key, new DecodedImage(std::move(image)), bytes); // owned by the cache
    if (onReady) {
        onReady();
    }
}

void EntryImages::dropPending() {
    dropped_->store(true);
    dropped_ = std::make_shared<std::atomic<bool>>(false);
    pending_.clear();
}

} // namespace quillane
