// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/clipboard/ClipboardEntry.hpp"

#include <QImage>
#include <QSize>

namespace quillane {

/// A picture made small.
struct DecodedImage {
    QImage image;   ///< null when it cannot be shown
    QSize original; ///< the picture's own size in pixels, as far as it is known

    bool operator==(const DecodedImage&) const = default;
};

/// Pictures of more pixels than this are not decoded: a small file may claim to be huge.
inline constexpr qint64 mostPixelsDecoded = 40'000'000;

/// The first picture of the entry in a size of at most `bound`, never larger than it is. Blocks; from any thread.
[[nodiscard]] DecodedImage decodeImage(const core::ClipboardItems& items, QSize bound);

} // namespace quillane
