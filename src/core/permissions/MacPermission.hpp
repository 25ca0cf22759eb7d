// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace quillane::core {

/// A permission that the keyboard features may need, in the order of automatic requests.
enum class MacPermission { inputMonitoring, accessibility };

inline constexpr std::array allPermissions{MacPermission::inputMonitoring, MacPermission::accessibility};

[[nodiscard]] constexpr std::string_view rawValue(MacPermission permission) {
    return permission == MacPermission::inputMonitoring ? "inputMonitoring" : "accessibility";
}

/// The permission with this raw value, or none for any other text.
[[nodiscard]] constexpr std::optional<MacPermission> permissionFromRawValue(std::string_view text) {
    for (const auto permission : allPermissions) {
        if (rawValue(permission) == text) {
            return permission;
        }
    }
    return std::nullopt;
}

} // namespace quillane::core
