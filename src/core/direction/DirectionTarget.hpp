// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/SupportedApplication.hpp"
#include "core/localization/Desktop.hpp"

#include <string_view>
#include <vector>

namespace quillane::core {

/// LibreOffice, whose Writer has direction buttons of its own. Not a SupportedApplication.
inline constexpr std::string_view libreOfficeBundleID = "org.libreoffice.script";

/// Whether direction chords mean anything in the application with exactly this bundle identifier.
[[nodiscard]] constexpr bool hasDirectionCommands(std::string_view bundleID) {
    return supportedApplication(bundleID).has_value() || bundleID == libreOfficeBundleID;
}

/// An application that the testing page offers.
struct DirectionTestTarget {
    std::string_view bundleID;
    std::string_view name;
};

/// The test targets of a desktop, in the order of the picker: on macOS the supported applications, on Linux those that
/// have a counterpart there.
[[nodiscard]] inline std::vector<DirectionTestTarget> directionTestTargets(Desktop desktop) {
    if (desktop == Desktop::linuxDesktop) {
        const auto& chrome = traits(SupportedApplication::chrome);
        return {{chrome.bundleID, chrome.displayName}, {libreOfficeBundleID, "LibreOffice Writer"}};
    }
    std::vector<DirectionTestTarget> targets;
    targets.reserve(supportedApplications.size());
    for (const auto& application : supportedApplications) {
        targets.push_back({application.bundleID, application.displayName});
    }
    return targets;
}

} // namespace quillane::core
