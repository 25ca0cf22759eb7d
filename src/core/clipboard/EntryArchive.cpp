// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/EntryArchive.hpp"

#include "core/propertylist/PropertyList.hpp"

#include <cmath>
#include <string>
#include <unordered_set>
#include <utility>

namespace quillane::core::entryArchive {

namespace {

using Value = PropertyListValue;

std::optional<std::vector<std::byte>> serialized(const Value& value) {
    auto bytes = serializePropertyList(value, maximumBytes);
    return bytes ? std::optional(std::move(*bytes)) : std::nullopt;
}

template <typename T>
const T* member(const Value::Dictionary& dictionary, const char* key) {
    const auto found = dictionary.find(key);
    return found != dictionary.end() ? found->second.as<T>() : nullptr;
}

/// Reads a field; false when it is missing or of another type.
template <typename T>
bool read(const Value::Dictionary& dictionary, const char* key, T& field) {
    const auto* value = member<T>(dictionary, key);
    if (value) {
        field = *value;
    }
    return value != nullptr;
}

bool read(const Value::Dictionary& dictionary, const char* key, Shared<std::string>& field) {
    std::string text;
    const bool isRead = read(dictionary, key, text);
    field = std::move(text);
    return isRead;
}

bool read(const Value::Dictionary& dictionary, const char* key, Uuid& field) {
    const auto* text = member<std::string>(dictionary, key);
    const auto uuid = text ? Uuid::parse(*text) : std::nullopt;
    field = uuid.value_or(Uuid{});
    return uuid.has_value();
}

bool read(const Value::Dictionary& dictionary, const char* key, ClipboardKind& field) {
    const auto* text = member<std::string>(dictionary, key);
    const auto kind = text ? clipboardKind(*text) : std::nullopt;
    field = kind.value_or(ClipboardKind::text);
    return kind.has_value();
}

/// A date, or its number. NaN is refused: it has no order among dates.
bool read(const Value::Dictionary& dictionary, const char* key, Date& field) {
    if (const auto* date = member<Value::Date>(dictionary, key)) {
        field.secondsSinceReferenceDate = date->secondsSinceReferenceDate;
    } else if (const auto* seconds = member<double>(dictionary, key)) {
        field.secondsSinceReferenceDate = *seconds;
    } else {
        return false;
    }
    return std::isfinite(field.secondsSinceReferenceDate);
}

bool read(const Value& value, ClipboardRepresentation& representation) {
    const auto* dictionary = value.as<Value::Dictionary>();
    const auto* data = dictionary ? member<Value::Data>(*dictionary, "data") : nullptr;
    if (!data || !read(*dictionary, "type", representation.type)) {
        return false;
    }
    representation.data = *data;
    return true;
}

/// Reads an array by reading its elements.
template <typename T>
bool read(const Value& value, std::vector<T>& elements) {
    const auto* array = value.as<Value::Array>();
    if (!array) {
        return false;
    }
    for (const auto& element : *array) {
        if (!read(element, elements.emplace_back())) {
            return false;
        }
    }
    return true;
}

bool read(const Value::Dictionary& dictionary, const char* key, Shared<ClipboardItems>& field) {
    const auto found = dictionary.find(key);
    ClipboardItems items;
    if (found == dictionary.end() || !read(found->second, items)) {
        return false;
    }
    field = std::move(items);
    return true;
}

Value itemsValue(const ClipboardItems& items) {
    Value::Array list;
    for (const auto& item : items) {
        Value::Array representations;
        for (const auto& representation : item) {
            Value::Dictionary fields{{"type", representation.type}};
            fields.emplace("data", representation.data);
            representations.emplace_back(std::move(fields));
        }
        list.emplace_back(std::move(representations));
    }
    return Value(std::move(list));
}

} // namespace

std::optional<std::vector<std::byte>> encode(const ClipboardEntry& entry) {
    Value::Dictionary fields{
        {"id", entry.id.toString()},
        {"digest", entry.digest},
        {"kind", std::string(rawValue(entry.kind))},
        {"text", *entry.text},
        {"source", entry.source},
        {"sourceName", entry.sourceName},
        {"createdAt", Value::Date{entry.createdAt.secondsSinceReferenceDate}},
        {"copiedAt", Value::Date{entry.copiedAt.secondsSinceReferenceDate}},
        {"pinned", entry.pinned},
    };
    fields.emplace("items", itemsValue(*entry.items));
    return serialized(Value(std::move(fields)));
}

std::optional<ClipboardEntry> decode(std::span<const std::byte> propertyList) {
    const auto value = parsePropertyList(propertyList, maximumBytes);
    const auto* fields = value ? value->as<Value::Dictionary>() : nullptr;
    ClipboardEntry entry;
    if (!fields || !read(*fields, "id", entry.id) || !read(*fields, "digest", entry.digest) ||
        !read(*fields, "kind", entry.kind) || !read(*fields, "text", entry.text) ||
        !read(*fields, "source", entry.source) || !read(*fields, "sourceName", entry.sourceName) ||
        !read(*fields, "createdAt", entry.createdAt) || !read(*fields, "copiedAt", entry.copiedAt) ||
        !read(*fields, "pinned", entry.pinned) || !read(*fields, "items", entry.items)) {
        return std::nullopt;
    }
    return entry;
}

std::optional<std::vector<std::byte>> encodeIndex(std::span<const Uuid> ids) {
    Value::Array names;
    for (const auto& id : ids) {
        names.emplace_back(id.toString());
    }
    return serialized(std::move(names));
}

std::optional<std::vector<Uuid>> decodeIndex(std::span<const std::byte> propertyList) {
    const auto value = parsePropertyList(propertyList, maximumBytes);
    const auto* names = value ? value->as<Value::Array>() : nullptr;
    if (!names) {
        return std::nullopt;
    }
    std::vector<Uuid> ids;
    std::unordered_set<Uuid> seen;
    for (const auto& name : *names) {
        const auto* text = name.as<std::string>();
        const auto id = text ? Uuid::parse(*text) : std::nullopt;
        if (!id || !seen.insert(*id).second) {
            return std::nullopt;
        }
        ids.push_back(*id);
    }
    return ids;
}

} // namespace quillane::core::entryArchive
