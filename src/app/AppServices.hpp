// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/FileExaminer.hpp"
#include "core/fileshare/UrlSession.hpp"
#include "core/localization/Desktop.hpp"
#include "core/preferences/UserDefaults.hpp"
#include "core/support/SecretStore.hpp"
#include "platform/Accessibility.hpp"
#include "platform/ApplicationCatalog.hpp"
#include "platform/ApplicationMenu.hpp"
#include "platform/AreaCapture.hpp"
#include "platform/EventTap.hpp"
#include "platform/FilePanel.hpp"
#include "platform/HotKeys.hpp"
#include "platform/InputSources.hpp"
#include "platform/KeyEvents.hpp"
#include "platform/Launcher.hpp"
#include "platform/LoginItemService.hpp"
#include "platform/MainQueue.hpp"
#include "platform/Pasteboard.hpp"
#include "platform/PermissionService.hpp"
#include "platform/SecureInput.hpp"
#include "platform/SerialQueue.hpp"
#include "platform/ServicesMenu.hpp"
#include "platform/StatusItem.hpp"
#include "platform/SystemInspector.hpp"
#include "platform/SystemSymbols.hpp"
#include "platform/UpdaterService.hpp"
#include "platform/WindowList.hpp"
#include "platform/WindowTraits.hpp"
#include "platform/Workspace.hpp"

namespace quillane {

/// What the application needs of the desktop, borrowed: the real backend in the program, fakes in tests.
struct AppServices {
    core::Desktop desktop{}; ///< the desktop that texts name
    MainQueue& mainQueue;
    core::UserDefaults& userDefaults;
    Workspace& workspace;
    ApplicationCatalog& applicationCatalog;
    InputSources& inputSources;
    KeyEvents& keyEvents;
    EventTap& eventTap;
    Accessibility& accessibility;
    PermissionService& permissions;
    StatusItem& statusItem;
    ApplicationMenu& applicationMenu;
    WindowTraits& windowTraits;
    WindowList& windowList;
    Pasteboard& pasteboard;
    AreaCapture& areaCapture;
    HotKeys& hotKeys;
    SecureInput& secureInput;
    core::SecretStore& secretStore;
    SerialQueue& vaultQueue; ///< where the clipboard history's disk work runs
    SerialQueue& imageQueue; ///< where pictures are decoded
    SerialQueue& fileQueue;  ///< where files are looked up
    FilePanel& filePanel;
    SystemSymbols& systemSymbols;
    ServicesMenu& servicesMenu;
    core::UrlSessionFactory urlSessions;
    core::FileExaminer fileExaminer; ///< asks the disk about files that are to be shared
    Launcher& launcher;
    LoginItemService& loginItem;
    SystemInspector& systemInspector;
    UpdaterService* updater = nullptr; ///< absent where something else updates the program
};

} // namespace quillane
