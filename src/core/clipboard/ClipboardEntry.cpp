// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardEntry.hpp"

#include "core/support/Characters.hpp"
#include "core/support/Digest.hpp"

#include <algorithm>
#include <utility>

namespace quillane::core {

std::string clipboardDigest(ClipboardKind kind, const ClipboardItems& items) {
    ChunkDigest digest;
    digest.add(rawValue(kind));
    for (const auto& item : items) {
        digest.add(std::string_view("item"));
        std::vector<const ClipboardRepresentation*> sorted;
        sorted.reserve(item.size());
        for (const auto& representation : item) {
            sorted.push_back(&representation);
        }
        std::ranges::stable_sort(sorted, {}, &ClipboardRepresentation::type);
        for (const auto* representation : sorted) {
            digest.add(std::string_view(representation->type));
            digest.add(std::span(*representation->data));
        }
    }
    return digest.finish();
}

ClipboardEntry ClipboardEntry::make(ClipboardKind kind, std::string_view text, std::string source,
                                    std::string sourceName, ClipboardItems items, Date now) {
    ClipboardEntry entry;
    entry.id = Uuid::random();
    entry.digest = clipboardDigest(kind, items);
    entry.kind = kind;
    entry.text = validUtf8(std::string(firstCharacters(text, maximumTextCharacters)));
    entry.source = validUtf8(std::move(source));
    entry.sourceName = validUtf8(std::move(sourceName));
    entry.createdAt = now;
    entry.copiedAt = now;
    entry.items = std::move(items);
    return entry;
}

std::size_t ClipboardEntry::byteCount() const {
    std::size_t count = 0;
    for (const auto& item : *items) {
        for (const auto& representation : item) {
            count += representation.data->size();
        }
    }
    return count;
}

} // namespace quillane::core
