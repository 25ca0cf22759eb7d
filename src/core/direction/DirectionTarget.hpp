// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/SupportedApplication.hpp"
#include "core/localization/Desktop.hpp"

#include <string_view>
#include <vector>

namespace quillane::core {

/// LibreOffice, whose Writer has direction buttons of its own. It is no SupportedApplication.
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

/// What there is to test on a desktop, in the order of the picker: the supported applications on macOS, and on Linux
/// those of which it has a peer.
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
