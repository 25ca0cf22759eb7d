// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/clipboard/ClipboardEntry.hpp"

#include <QImage>
#include <QSize>

namespace quillane {

/// A scaled-down picture.
struct DecodedImage {
    QImage image;   ///< null when it cannot be shown
    QSize original; ///< the picture's full size in pixels, if known

    bool operator==(const DecodedImage&) const = default;
};

/// Pictures with more pixels than this are not decoded: a small file may claim to be huge.
inline constexpr qint64 maximumPixelsDecoded = 40'000'000;

/// The first picture of the entry, scaled to at most `bound` and never enlarged. Blocks; may be called from any thread.
[[nodiscard]] DecodedImage decodeImage(const core::ClipboardItems& items, QSize bound);

} // namespace quillane
