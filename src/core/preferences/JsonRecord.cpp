// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/preferences/JsonRecord.hpp"

#include <algorithm>
#include <cmath>

namespace quillane::core {

using Json = nlohmann::json;

bool JsonRecordReader::read(const char* key, bool& value) const {
    const auto* boolean = json_.at(key).get_ptr<const Json::boolean_t*>();
    value = boolean && *boolean;
    return boolean != nullptr;
}

bool JsonRecordReader::read(const char* key, std::int64_t& value) const {
    constexpr double bound = 9'223'372'036'854'775'808.0;
    const auto& stored = json_.at(key);
    if (stored.is_number_unsigned()) {
        const auto number = stored.get<std::uint64_t>();
        value = static_cast<std::int64_t>(number);
        return number <= static_cast<std::uint64_t>(INT64_MAX);
    }
    if (stored.is_number_integer()) {
        value = stored.get<std::int64_t>();
        return true;
    }
    if (stored.is_number_float()) {
        const auto number = stored.get<double>();
        if (number == std::trunc(number) && number >= -bound && number < bound) {
            value = static_cast<std::int64_t>(number);
            return true;
        }
    }
    return false;
}

bool JsonRecordReader::read(const char* key, std::vector<std::string>& value) const {
    const auto& stored = json_.at(key);
    if (!stored.is_array() || !std::ranges::all_of(stored, [](const Json& element) { return element.is_string(); })) {
        return false;
    }
    value = stored.get<std::vector<std::string>>();
    return true;
}

} // namespace quillane::core
