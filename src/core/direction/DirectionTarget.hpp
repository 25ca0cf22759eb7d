// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/SupportedApplication.hpp"
#include "core/localization/Desktop.hpp"

#include <algorithm>
#include <string_view>
#include <vector>

namespace quillane::core {

/// Whether direction chords mean anything in the application with exactly this bundle identifier.
[[nodiscard]] inline bool hasDirectionCommands(std::string_view bundleID) {
    return supportedApplication(bundleID) != nullptr;
}

/// An application that the testing page offers.
struct DirectionTestTarget {
    std::string_view bundleID;
    std::string_view name;
};

/// The test targets of a desktop, in the order of the picker: the supported applications, on Linux those that have an
/// edition there. Of several programs in one application it is the first.
[[nodiscard]] inline std::vector<DirectionTestTarget> directionTestTargets(Desktop desktop) {
    std::vector<DirectionTestTarget> targets;
    for (const auto& application : supportedApplications()) {
        const bool isThere = desktop == Desktop::macOS || !application.windowClasses.front().empty();
        const bool isListed =
            std::ranges::find(targets, application.bundleID, &DirectionTestTarget::bundleID) != targets.end();
        if (isThere && !isListed) {
            targets.push_back({application.bundleID, application.displayName});
        }
    }
    return targets;
}

} // namespace quillane::core
