// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillane {

/// The name with its letters A to Z in lower case: the names of an application on this desktop (window class, desktop
/// entry) are spelled differently in different places.
[[nodiscard]] std::string caseless(std::string_view name);

/// The bundle identifier for a window class or the name of a desktop entry, in any case of letters, if the agent knows
/// the application.
[[nodiscard]] std::optional<std::string> knownBundleIdentifier(std::string_view windowClass);

} // namespace quillane
