// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/permissions/PermissionSetupPolicy.hpp"

#include <algorithm>
#include <system_error>

namespace quillane::core {

namespace {

/// The absolute path with links followed as far as it exists, without "." and ".." and without a separator at its end.
std::optional<std::filesystem::path> resolved(const std::filesystem::path& path) {
    if (!path.is_absolute()) {
        return std::nullopt;
    }
    std::error_code error;
    const auto result = std::filesystem::weakly_canonical(path, error);
    if (error) {
        return std::nullopt;
    }
    return result.has_filename() ? result : result.parent_path();
}

/// Whether the path lies below the folder. Both are resolved.
bool isBelow(const std::filesystem::path& path, const std::filesystem::path& folder) {
    const auto [rest, end] = std::ranges::mismatch(folder, path);
    return rest == folder.end() && end != path.end();
}

} // namespace

std::optional<MacPermission> PermissionSetupPolicy::nextAutomaticRequest(const std::set<MacPermission>& granted,
                                                                         bool installed) const {
    if (!installed || granted.contains(MacPermission::accessibility)) {
        return std::nullopt;
    }
    const auto missing = std::ranges::find_if(allPermissions, [&](auto one) { return !granted.contains(one); });
    return requested.contains(*missing) ? std::nullopt : std::optional(*missing);
}

bool PermissionSetupPolicy::canStartKeyboardMonitor(const std::set<MacPermission>& granted) {
    return granted.contains(MacPermission::accessibility);
}

bool PermissionSetupPolicy::isInstalled(const std::filesystem::path& app, const std::filesystem::path& home) {
    const auto named = app.has_filename() ? app : app.parent_path();
    const auto bundle = resolved(app);
    const auto folder = resolved(home / "Applications");
    return named.extension() == ".app" && bundle &&
           (isBelow(*bundle, "/Applications") || (folder && isBelow(*bundle, *folder)));
}

} // namespace quillane::core
