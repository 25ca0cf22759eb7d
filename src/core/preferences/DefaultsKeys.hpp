// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// The names under which settings are stored. Never rename one: users' settings live under them.
namespace quillane::core::defaultsKeys {

inline constexpr std::string_view shiftEnglish = "ShiftEnglishEnabled";
inline constexpr std::string_view languageSwitch = "LanguageSwitchEnabled";
inline constexpr std::string_view writingDirection = "WritingDirectionEnabled";
inline constexpr std::string_view keepAwake = "KeepAwakeEnabled";
inline constexpr std::string_view excludeScreenSharing = "ExcludeScreenSharing";
inline constexpr std::string_view paused = "AllFeaturesPaused";
/// Boolean, initially true: left Option with right Shift fixes text that was typed in the wrong layout.
inline constexpr std::string_view fixWrongLayout = "FixWrongLayoutEnabled";

/// Data: the JSON of InstallationPreferences.
inline constexpr std::string_view installation = "QuillaneInstallationV1";
/// Array of strings: the languages of texts that the system provides.
inline constexpr std::string_view appleLanguages = "AppleLanguages";
/// Boolean, one-shot: open the permissions page after a relaunch of our own.
inline constexpr std::string_view showPermissionsAfterRestart = "QuillaneShowPermissionsAfterRestart";
/// Boolean: the settings of the previous edition have been looked for.
inline constexpr std::string_view identityMigration = "QuillaneIdentityMigrationV1";
/// Boolean: settings of the previous edition were there.
inline constexpr std::string_view migratedInstallation = "QuillaneMigratedInstallation";

} // namespace quillane::core::defaultsKeys
