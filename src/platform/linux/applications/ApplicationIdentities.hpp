// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillane {

/// The name with its letters A to Z in lower case: what an application is called on this desktop (its window class, its
/// desktop entry) is spelled differently in different places.
[[nodiscard]] std::string caseless(std::string_view name);

/// The bundle identifier that stands for a window class or the name of a desktop entry, in any spelling of its letters,
/// where the agent knows the application.
[[nodiscard]] std::optional<std::string> knownBundleIdentifier(std::string_view windowClass);

} // namespace quillane
