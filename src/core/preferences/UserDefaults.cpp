// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/preferences/UserDefaults.hpp"

namespace quillane::core {

std::optional<std::vector<std::string>> UserDefaults::stringArray(std::string_view key) const {
    const auto value = object(key);
    const auto* elements = value ? value->as<PropertyListValue::Array>() : nullptr;
    if (elements == nullptr) {
        return std::nullopt;
    }
    std::vector<std::string> strings;
    strings.reserve(elements->size());
    for (const auto& element : *elements) {
        const auto* text = element.as<std::string>();
        if (text == nullptr) {
            return std::nullopt;
        }
        strings.push_back(*text);
    }
    return strings;
}

} // namespace quillane::core
