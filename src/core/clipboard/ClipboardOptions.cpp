// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardOptions.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>

namespace quillane::core {

namespace {

using Json = nlohmann::json;

void put(Json& json, const char* key, const auto& value) {
    json[key] = value;
}

bool read(const Json& json, bool& value) {
    const auto* boolean = json.get_ptr<const Json::boolean_t*>();
    value = boolean && *boolean;
    return boolean != nullptr;
}

/// A number without a fraction, however it is written.
bool read(const Json& json, std::int64_t& value) {
    constexpr double bound = 9'223'372'036'854'775'808.0;
    if (json.is_number_unsigned()) {
        const auto number = json.get<std::uint64_t>();
        value = static_cast<std::int64_t>(number);
        return number <= static_cast<std::uint64_t>(INT64_MAX);
    }
    if (json.is_number_integer()) {
        value = json.get<std::int64_t>();
        return true;
    }
    if (json.is_number_float()) {
        const auto number = json.get<double>();
        if (number == std::trunc(number) && number >= -bound && number < bound) {
            value = static_cast<std::int64_t>(number);
            return true;
        }
    }
    return false;
}

bool read(const Json& json, std::vector<std::string>& value) {
    if (!json.is_array() || !std::ranges::all_of(json, [](const Json& element) { return element.is_string(); })) {
        return false;
    }
    value = json.get<std::vector<std::string>>();
    return true;
}

bool get(const Json& json, const char* key, auto& value) {
    const auto found = json.find(key);
    return found != json.end() && read(*found, value);
}

/// Applies `visit(key, field)` to every field; stops and returns false when it returns false.
bool forEachField(auto& options, auto visit) {
    return visit("enabled", options.enabled) && visit("saveText", options.saveText) &&
           visit("saveImages", options.saveImages) && visit("saveFiles", options.saveFiles) &&
           visit("persist", options.persist) && visit("limit", options.limit) &&
           visit("storageMB", options.storageMB) && visit("popupAtCursor", options.popupAtCursor) &&
           visit("pinsOnTop", options.pinsOnTop) && visit("imageHeight", options.imageHeight) &&
           visit("previewDelay", options.previewDelay) && visit("sortByLastCopy", options.sortByLastCopy) &&
           visit("ignoredApps", options.ignoredApps);
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
    Json json = Json::object();
    forEachField(options, [&](const char* key, const auto& value) {
        put(json, key, value);
        return true;
    });
    const std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

std::optional<ClipboardOptions> decodeClipboardOptions(std::span<const std::byte> bytes) {
    const auto* text = reinterpret_cast<const char*>(bytes.data());
    const Json json = Json::parse(text, text + bytes.size(), nullptr, false);
    ClipboardOptions options;
    const bool complete =
        json.is_object() && forEachField(options, [&](const char* key, auto& value) { return get(json, key, value); });
    return complete ? std::optional(std::move(options)) : std::nullopt;
}

} // namespace quillane::core
