// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/preferences/AppPreferences.hpp"

#include "core/preferences/DefaultsKeys.hpp"

#include <cstddef>
#include <span>
#include <string>

namespace quillane::core {

namespace {

InstallationPreferences load(const UserDefaults& defaults) {
    const auto data = defaults.data(defaultsKeys::installation);
    if (!data) {
        return {};
    }
    const std::string_view document(reinterpret_cast<const char*>((*data)->data()), (*data)->size());
    return InstallationPreferences::fromJson(document).value_or(InstallationPreferences());
}

} // namespace

AppPreferences::AppPreferences(UserDefaults& defaults) : defaults_(defaults), state_(load(defaults)) {
    save();
    configureBundleLanguage();
}

void AppPreferences::choose(AppLanguage language) {
    state_.choose(language);
    save();
    configureBundleLanguage();
    changed_.notify();
}

void AppPreferences::save() {
    const auto document = state_.toJson();
    const auto bytes = std::as_bytes(std::span(document));
    defaults_.setObject(defaultsKeys::installation, PropertyListValue::Data({bytes.begin(), bytes.end()}));
}

/// Texts that the system itself provides follow the interface language.
void AppPreferences::configureBundleLanguage() {
    defaults_.setObject(defaultsKeys::appleLanguages,
                        PropertyListValue::Array{PropertyListValue(std::string(languageID(state_.language)))});
}

} // namespace quillane::core
