// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/ImageDecoding.hpp"

#include "core/clipboard/PasteboardTypes.hpp"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <utility>

namespace quillane {

namespace {

constexpr std::array formats{std::pair{core::pasteboardTypes::png, "png"},
                             std::pair{core::pasteboardTypes::jpeg, "jpeg"},
                             std::pair{core::pasteboardTypes::tiff, "tiff"}};

/// A picture that was taken on its side is stored unrotated.
bool isTurned(QImageIOHandler::Transformations transformation) {
    return transformation.testFlag(QImageIOHandler::TransformationRotate90);
}

DecodedImage decode(const std::vector<std::byte>& bytes, const char* format, QSize bound) {
    auto data = QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
    QBuffer buffer(&data);
    QImageReader reader(&buffer, format); // in no other format, whatever the bytes look like
    reader.setAutoTransform(true);
    const auto stored = reader.size();
    if (!stored.isValid() || stored.isEmpty()) {
        return {};
    }
    const bool turned = isTurned(reader.transformation());
    const auto original = turned ? stored.transposed() : stored;
    if (static_cast<qint64>(stored.width()) * stored.height() > maximumPixelsDecoded) {
        return {{}, original};
    }
    if (original.width() > bound.width() || original.height() > bound.height()) {
        const auto scaled = original.scaled(bound, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
        reader.setScaledSize(turned ? scaled.transposed() : scaled);
    }
    return {reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied), original};
}

} // namespace

DecodedImage decodeImage(const core::ClipboardItems& items, QSize bound) {
    DecodedImage result;
    for (const auto& item : items) {
        for (const auto& [type, format] : formats) {
            const auto found = std::ranges::find(item, type, &core::ClipboardRepresentation::type);
            if (found == item.end()) {
                continue;
            }
            auto decoded = decode(*found->data, format, bound);
            if (!decoded.image.isNull()) {
                return decoded;
            }
            if (result.original.isEmpty()) {
                result = std::move(decoded);
            }
        }
    }
    return result;
}

} // namespace quillane
