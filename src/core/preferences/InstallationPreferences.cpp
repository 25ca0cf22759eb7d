// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/preferences/InstallationPreferences.hpp"

#include <nlohmann/json.hpp>

namespace quillane::core {

std::string InstallationPreferences::toJson() const {
    return nlohmann::json{{"language", languageID(language)}, {"userSelectedLanguage", userSelectedLanguage}}.dump();
}

std::optional<InstallationPreferences> InstallationPreferences::fromJson(std::string_view document) {
    const auto json = nlohmann::json::parse(document, nullptr, false);
    if (!json.is_object()) {
        return std::nullopt;
    }
    const auto id = json.find("language");
    const auto selected = json.find("userSelectedLanguage");
    if (id == json.end() || !id->is_string() || selected == json.end() || !selected->is_boolean()) {
        return std::nullopt;
    }
    const auto language = languageFromID(id->get_ref<const std::string&>());
    return language ? std::optional(InstallationPreferences{*language, selected->get<bool>()}) : std::nullopt;
}

} // namespace quillane::core
