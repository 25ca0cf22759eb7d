// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "permissions/PermissionDragGuide.hpp"

#include "core/permissions/PermissionGuidePlacement.hpp"
#include "permissions/PermissionController.hpp"
#include "platform/Platform.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr auto followInterval = 500ms;

// Smaller windows are dialogs or panels of System Settings.
constexpr double minimumWindowWidth = 400;
constexpr double minimumWindowHeight = 300;

std::optional<core::ScreenRect> settingsWindow(pid_t settings, const std::vector<OnScreenWindow>& windows) {
    const auto found = std::ranges::find_if(windows, [settings](const OnScreenWindow& window) {
        return window.pid == settings && window.layer == 0 && window.bounds.width > minimumWindowWidth &&
               window.bounds.height > minimumWindowHeight;
    });
    return found != windows.end() ? std::optional(found->bounds) : std::nullopt;
}

double sharedArea(const core::ScreenRect& a, const core::ScreenRect& b) {
    const double width = std::min(a.x + a.width, b.x + b.width) - std::max(a.x, b.x);
    const double height = std::min(a.y + a.height, b.y + b.height) - std::max(a.y, b.y);
    return width > 0 && height > 0 ? width * height : 0;
}

/// The screen with the largest part of the window; the main one when it is on none.
const ScreenArea& screenOf(const std::optional<core::ScreenRect>& window, const std::vector<ScreenArea>& screens) {
    if (!window) {
        return screens.front();
    }
    return *std::ranges::max_element(screens, {},
                                     [&](const ScreenArea& screen) { return sharedArea(screen.frame, *window); });
}

} // namespace

PermissionDragGuide::PermissionDragGuide(PermissionGuideServices services) : services_(std::move(services)) {}

void PermissionDragGuide::present(core::MacPermission permission) {
    if (!panel_) {
        panel_ = services_.makePanel();
        panel_->closed = [this] { dismiss(); };
    }
    panel_->setPermission(permission);
    timer_ = services_.platform.mainQueue->repeat(followInterval, [this] { update(); });
    update();
}

void PermissionDragGuide::dismiss() {
    timer_.cancel();
    step_.end();
    if (panel_) {
        panel_->orderOut();
    }
}

void PermissionDragGuide::update() {
    step_.restart();
    const auto front = services_.platform.workspace->frontmostApplication();
    if (!front || front->bundleID != systemSettings) {
        panel_->orderOut();
        return;
    }
    services_.platform.windowList->read(
        [this, step = step_.watch(), pid = front->pid](const std::vector<OnScreenWindow>& windows) {
            if (step) {
                place(pid, windows);
            }
        });
}

void PermissionDragGuide::place(pid_t settings, const std::vector<OnScreenWindow>& windows) {
    const auto screens = services_.screens();
    if (screens.empty()) {
        return; // the last one was unplugged
    }
    const auto window = settingsWindow(settings, windows);
    const double mainHeight = screens.front().frame.height;
    const auto visible = core::fromTopLeft(screenOf(window, screens).visible, mainHeight);
    const auto beside = window ? std::optional(core::fromTopLeft(*window, mainHeight)) : std::nullopt;
    const auto frame = core::permissionGuidePlacement::frame(beside, visible, cardSize);
    panel_->setFrame(core::fromBottomLeft(frame, mainHeight));
    services_.permissions.refresh();
    if (!panel_->isShown()) {
        panel_->orderFront();
    }
}

} // namespace quillane
