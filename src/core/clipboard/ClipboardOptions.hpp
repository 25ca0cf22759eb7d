// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/ClipboardKind.hpp"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quillane::core {

/// The settings of the clipboard history. The fields keep whatever was set; consumers use the derived values.
struct ClipboardOptions {
    bool enabled = false;
    bool saveText = true;
    bool saveImages = true;
    bool saveFiles = true;
    bool persist = true;             ///< keep the history between launches, encrypted on disk
    std::int64_t limit = 200;        ///< maximum number of unpinned entries
    std::int64_t storageMB = 250;    ///< maximum size of all entries, in units of 1,048,576 bytes
    bool popupAtCursor = true;       ///< the panel opens at the mouse pointer rather than in the centre of the screen
    bool pinsOnTop = true;           ///< pinned entries come before unpinned ones
    std::int64_t imageHeight = 60;   ///< of thumbnails, in points
    std::int64_t previewDelay = 700; ///< milliseconds that the pointer rests on a row before its preview opens
    bool sortByLastCopy = true;      ///< by the last copy or use rather than by the first
    std::vector<std::string> ignoredApps = {}; ///< bundle identifiers of applications whose copies are never recorded

    bool operator==(const ClipboardOptions&) const = default;

    /// `limit` within 10 … 1,000.
    [[nodiscard]] std::size_t safeLimit() const;

    /// `storageMB` within 25 … 1,000, in bytes.
    [[nodiscard]] std::size_t byteLimit() const;

    [[nodiscard]] bool accepts(ClipboardKind kind) const;
};

/// The defaults key that the options are stored under, as data.
inline constexpr const char* clipboardOptionsKey = "QuillaneClipboardOptionsV1";

/// The options as a JSON object in UTF-8, with one key a field.
[[nodiscard]] std::vector<std::byte> encodeClipboardOptions(const ClipboardOptions& options);

/// Reads what `encodeClipboardOptions` writes. None when the bytes are not a JSON object, lack a key of the first
/// version, or hold a value of another type. A key that was added later takes its default when it is missing; unknown
/// keys are ignored.
[[nodiscard]] std::optional<ClipboardOptions> decodeClipboardOptions(std::span<const std::byte> json);

} // namespace quillane::core
