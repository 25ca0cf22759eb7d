// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/preferences/InstallationMigration.hpp"

#include "core/preferences/DefaultsKeys.hpp"

#include <array>
#include <string>

namespace quillane::core::installationMigration {

namespace {

// Keep Awake and the exclusion of screen sharing start with their initial values on purpose.
constexpr std::array<std::string_view, 8> migratedKeys{defaultsKeys::installation,     defaultsKeys::appleLanguages,
                                                       defaultsKeys::shiftEnglish,     defaultsKeys::languageSwitch,
                                                       defaultsKeys::writingDirection, defaultsKeys::paused,
                                                       "SUEnableAutomaticChecks",      "SUAutomaticallyUpdate"};

} // namespace

void migratePreferences(UserDefaults& defaults, const std::optional<PropertyListValue::Dictionary>& legacy) {
    if (defaults.boolean(defaultsKeys::identityMigration).value_or(false)) {
        return;
    }
    PropertyListValue::Dictionary values;
    if (legacy) {
        for (const auto key : migratedKeys) {
            const auto found = legacy->find(std::string(key));
            if (found != legacy->end() && !defaults.object(key)) {
                values.insert(*found);
            }
        }
        values.insert_or_assign(std::string(defaultsKeys::migratedInstallation), true);
    }
    values.insert_or_assign(std::string(defaultsKeys::identityMigration), true);
    defaults.setObjects(values);
}

} // namespace quillane::core::installationMigration
