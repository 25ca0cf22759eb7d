// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/ClipboardManager.hpp"
#include "core/clipboard/ClipboardOptions.hpp"
#include "core/preferences/AppPreferences.hpp"
#include "permissions/PermissionController.hpp"
#include "platform/Platform.hpp"
#include "settings/SettingsModel.hpp"
#include "system/AppUpdater.hpp"
#include "system/LoginItemController.hpp"

#include <QIcon>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillane {

/// The clipboard history as its page sees it. A function that is absent is not offered.
struct ClipboardSettings {
    std::function<core::ClipboardOptions()> options;
    std::function<void(const core::ClipboardOptions&)> setOptions;
    std::function<core::LocalizedText()> status;
    std::function<bool()> hasStorageError; ///< the history is in memory only
    std::function<bool()> isShortcutTaken; ///< another program has the hot key
    std::function<void()> retryShortcut;
    std::function<PasteboardAccess()> access; ///< whether the system lets copies be read
    std::function<void()> openAccessSettings;
    std::function<bool()> isUnread;                               ///< a saved history cannot be read now
    std::function<bool()> isUsedElsewhere;                        ///< another copy of the program has locked the saved
                                                                  ///< history
    std::function<std::vector<core::SetAsideHistory>()> setAside; ///< number of histories that could not be read
    std::function<void(const core::SetAsideHistory&)> recover;    ///< adds what can be read of one
    std::function<void(const core::SetAsideHistory&)> forget;     ///< erases one
    std::function<std::optional<ClipboardManager::Recovery>()> lastRecovery;
    std::function<void(core::ClipboardHistory::Clearing)> clear;
    std::function<void(ApplicationCatalog::Handler)> findApplications; ///< as ApplicationCatalog does
};

/// The entry of a file manager that is made only at the user's request (ServicesMenu). Absent functions, or none as the
/// answer, mean that there is nothing to request.
struct FileManagerSettings {
    std::function<std::optional<bool>()> hasEntry;
    std::function<void(bool)> setEntry;
};

/// What the settings window shows and changes. Everything it refers to must outlive the window.
struct SettingsServices {
    const Platform& platform;
    SettingsModel& model;
    core::AppPreferences& preferences;
    PermissionController& permissions;
    LoginItemController& loginItem;
    AppUpdater& updater;
    ClipboardSettings clipboard;
    FileManagerSettings fileManager = {};
    std::function<QIcon(const std::string& name, const QColor& color)> symbol; ///< a null icon for unknown names
    QIcon applicationIcon;
};

} // namespace quillane
