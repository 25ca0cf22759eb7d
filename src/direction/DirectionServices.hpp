// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"
#include "core/preferences/UserDefaults.hpp"
#include "platform/Accessibility.hpp"
#include "platform/MainQueue.hpp"
#include "platform/Workspace.hpp"

#include <chrono>
#include <functional>

namespace quillane {

/// What the direction adapters need of the desktop, borrowed.
struct DirectionServices {
    Accessibility& accessibility;
    Workspace& workspace;
    MainQueue& mainQueue;
    core::UserDefaults& userDefaults;
};

/// Takes the one status line in which an attempt ends, if it ends in one.
using DirectionReport = std::function<void(const core::LocalizedText&)>;

/// How long a call to the application whose paragraph is turned may take.
inline constexpr std::chrono::milliseconds directionPatience{150};

} // namespace quillane
