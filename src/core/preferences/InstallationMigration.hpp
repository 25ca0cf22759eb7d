// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/preferences/UserDefaults.hpp"

#include <optional>
#include <string_view>

/// The one-time move of settings from the previous edition of the program.
namespace quillane::core::installationMigration {

/// The bundle identifier of the previous edition: its settings are stored under it, and it identifies a running copy.
inline constexpr std::string_view legacyBundleID = "com.quillane.legacy";

/// Copies the previous edition's settings, once per user. A value that is set here already is never overwritten.
void migratePreferences(UserDefaults& defaults, const std::optional<PropertyListValue::Dictionary>& legacy);

/// A stored record: the current copy; else the legacy copy, which is then written as the current one; else a new one,
/// written as well. Exceptions of the functions pass through.
template <typename ReadCurrent, typename ReadLegacy, typename WriteCurrent, typename Create>
auto loadState(ReadCurrent readCurrent, ReadLegacy readLegacy, WriteCurrent writeCurrent, Create create) {
    if (auto current = readCurrent()) {
        return *current;
    }
    auto legacy = readLegacy();
    auto state = legacy ? *legacy : create();
    writeCurrent(state);
    return state;
}

} // namespace quillane::core::installationMigration
