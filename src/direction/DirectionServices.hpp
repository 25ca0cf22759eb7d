// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/ChordOutcome.hpp"
#include "core/preferences/UserDefaults.hpp"
#include "platform/Accessibility.hpp"
#include "platform/EventTap.hpp"
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
    EventTap& eventTap;
};

/// Receives the outcome of an attempt, if it ends with one.
using DirectionReport = std::function<void(const core::ChordOutcome&)>;

/// Timeout of a call to the application whose paragraph is changed.
inline constexpr std::chrono::milliseconds directionTimeout{150};

} // namespace quillane
