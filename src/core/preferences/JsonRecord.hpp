// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>
#include <vector>

/// Settings records that are stored as a JSON object with one key a field. A record names its fields once, for reading
/// and writing:
///
///     void describe(auto& fields, auto& record) {
///         fields.required("enabled", record.enabled); // since the first version
///         fields.added("limit", record.limit);        // since a later one
///     }
///
/// A key of the first version is required: a record that lacks one is damaged. A key that was added later is missing in
/// every record that an earlier version has stored, so it takes its default; as a required key, it would reset all
/// settings with the update.
namespace quillane::core {

/// Reads the fields of a record that holds its defaults.
class JsonRecordReader {
public:
    /// Anything but an object lacks every key.
    explicit JsonRecordReader(const nlohmann::json& json) : json_(json), isIntact_(json.is_object()) {}

    void required(const char* key, auto& value) { isIntact_ = isIntact_ && json_.contains(key) && read(key, value); }

    void added(const char* key, auto& value) { isIntact_ = isIntact_ && (!json_.contains(key) || read(key, value)); }

    /// No required key is missing, and no value has another type than its field.
    [[nodiscard]] bool isIntact() const { return isIntact_; }

private:
    [[nodiscard]] bool read(const char* key, bool& value) const;

    /// A number without a fraction, however it is written.
    [[nodiscard]] bool read(const char* key, std::int64_t& value) const;

    [[nodiscard]] bool read(const char* key, std::vector<std::string>& value) const;

    const nlohmann::json& json_;
    bool isIntact_;
};

/// Writes every field.
class JsonRecordWriter {
public:
    void required(const char* key, const auto& value) { json_[key] = value; }

    void added(const char* key, const auto& value) { json_[key] = value; }

    [[nodiscard]] const nlohmann::json& json() const { return json_; }

private:
    nlohmann::json json_ = nlohmann::json::object();
};

} // namespace quillane::core
