// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/SupportedApplication.hpp"

#include <string_view>

namespace quillane::core {

/// LibreOffice, whose Writer has direction buttons of its own. It is no test target and so no SupportedApplication.
inline constexpr std::string_view libreOfficeBundleID = "org.libreoffice.script";

/// Whether direction chords mean anything in the application with exactly this bundle identifier.
[[nodiscard]] constexpr bool hasDirectionCommands(std::string_view bundleID) {
    return supportedApplication(bundleID).has_value() || bundleID == libreOfficeBundleID;
}

} // namespace quillane::core
