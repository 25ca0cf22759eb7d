// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardOptions.hpp"

#include "core/preferences/JsonRecord.hpp"

#include <algorithm>
#include <utility>

namespace quillane::core {

namespace {

using Json = nlohmann::json;

/// The fields of the first version are required. A field that comes later is `added`, so that the settings of users who
/// update stay as they are.
void describe(auto& fields, auto& options) {
    fields.required("enabled", options.enabled);
    fields.required("saveText", options.saveText);
    fields.required("saveImages", options.saveImages);
    fields.required("saveFiles", options.saveFiles);
    fields.required("persist", options.persist);
    fields.required("limit", options.limit);
    fields.required("storageMB", options.storageMB);
    fields.required("popupAtCursor", options.popupAtCursor);
    fields.required("pinsOnTop", options.pinsOnTop);
    fields.required("imageHeight", options.imageHeight);
    fields.required("previewDelay", options.previewDelay);
    fields.required("sortByLastCopy", options.sortByLastCopy);
    fields.required("ignoredApps", options.ignoredApps);
}

} // namespace

std::size_t ClipboardOptions::safeLimit() const {
    return static_cast<std::size_t>(std::clamp<std::int64_t>(limit, 10, 1'000));
}

std::size_t ClipboardOptions::byteLimit() const {
    return static_cast<std::size_t>(std::clamp<std::int64_t>(storageMB, 25, 1'000)) * 1'048'576;
}

bool ClipboardOptions::accepts(ClipboardKind kind) const {
    switch (kind) {
    case ClipboardKind::text:
        return saveText;
    case ClipboardKind::image:
        return saveImages;
    case ClipboardKind::files:
        return saveFiles;
    }
    return false;
}

std::vector<std::byte> encodeClipboardOptions(const ClipboardOptions& options) {
    JsonRecordWriter fields;
    describe(fields, options);
    const std::string text = fields.json().dump(-1, ' ', false, Json::error_handler_t::replace);
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

std::optional<ClipboardOptions> decodeClipboardOptions(std::span<const std::byte> bytes) {
    const auto* text = reinterpret_cast<const char*>(bytes.data());
    const Json json = Json::parse(text, text + bytes.size(), nullptr, false);
    JsonRecordReader fields(json);
    ClipboardOptions options;
    describe(fields, options);
    return fields.isIntact() ? std::optional(std::move(options)) : std::nullopt;
}

} // namespace quillane::core
