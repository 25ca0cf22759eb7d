// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/permissions/ApplicationLocation.hpp"

#include "core/permissions/PermissionSetupPolicy.hpp"

namespace quillane::core {

namespace {

constexpr std::string_view waitAndThen =
    "for n in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20; do kill -0 \"$1\" 2>/dev/null || exec ";
constexpr std::string_view untilGone = "\"$2\"; sleep 0.25; done";

} // namespace

ApplicationLocation ApplicationLocation::of(const std::filesystem::path& executable,
                                            const std::filesystem::path& home) {
    const auto folder = executable.parent_path();
    const auto bundle = folder.parent_path().parent_path();
    const bool isInBundle =
        folder.filename() == "MacOS" && folder.parent_path().filename() == "Contents" && bundle.extension() == ".app";
    if (!isInBundle) {
        return {executable, true};
    }
    return {bundle, PermissionSetupPolicy::isInstalled(bundle, home)};
}

ProcessCommand relaunchCommand(pid_t process, const std::filesystem::path& application) {
    std::string script(waitAndThen);
    script += application.extension() == ".app" ? "/usr/bin/open " : "";
    script += untilGone;
    return {"/bin/sh", {"-c", std::move(script), "quillane-relaunch", std::to_string(process), application.string()}};
}

std::string settingsAddress(MacPermission permission) {
    return std::string("x-apple.systempreferences:com.apple.preference.security?") +
           (permission == MacPermission::accessibility ? "Privacy_Accessibility" : "Privacy_ListenEvent");
}

} // namespace quillane::core
