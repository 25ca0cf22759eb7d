// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/RuntimeStatus.hpp"
#include "core/localization/AppLanguage.hpp"
#include "core/localization/Desktop.hpp"
#include "platform/AreaCapture.hpp"
#include "platform/StatusItem.hpp"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillane {

/// What the status menu shows.
struct StatusMenuState {
    core::AppLanguage language{};
    core::Desktop desktop{}; ///< the desktop that texts name
    std::string version;
    core::FeatureOptions options;
    bool keepAwakeActive = false;
    core::LocalizedText keepAwakeStatus;
    AreaCapture::Means captureMeans = AreaCapture::Means::none;
    bool accessibilityGranted = false;
    std::optional<core::LocalizedText> historyNotice; ///< what the user should know about the clipboard history
    core::LocalizedText lastAction;                   ///< empty before the first
    StatusRow status;

    bool operator==(const StatusMenuState&) const = default;
};

/// What its rows do. A row without an action is shown disabled.
struct StatusMenuActions {
    std::function<void()> captureArea;
    std::function<void()> showClipboard;
    std::function<void()> shareFile;
    std::function<void()> toggleKeepAwake;
    std::function<void()> showSettings;
    std::function<void()> showPermissions;
    std::function<void()> showTesting;
    std::function<void()> showUpdates;
    std::function<void()> checkForUpdates;
    std::function<void()> toggleShift;
    std::function<void()> toggleLanguage;
    std::function<void()> toggleDirection;
    std::function<void()> togglePause;
    std::function<void()> quit;
};

/// The twenty rows of the status menu, top to bottom.
[[nodiscard]] std::vector<MenuRow> statusMenuRows(const StatusMenuState& state, const StatusMenuActions& actions);

/// The layout direction of menus and windows in a language.
[[nodiscard]] LayoutDirection layoutDirection(core::AppLanguage language);

} // namespace quillane
