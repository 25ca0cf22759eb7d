// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

namespace quillane::core::screenSharingPolicy {

/// True exactly when the exclusion is enabled and the application in front is the system's viewer of another computer's
/// screen: keys typed there belong to that computer.
[[nodiscard]] bool bypassKeyboardProcessing(std::optional<std::string_view> bundleID, bool enabled);

} // namespace quillane::core::screenSharingPolicy
