// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/UrlSession.hpp"
#include "core/localization/Desktop.hpp"
#include "core/power/SleepAssertionClient.hpp"
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
#include "platform/ProxySettings.hpp"
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

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace quillane {

/// Every platform interface of one desktop: a backend in the program, fakes in tests. Members are destroyed last to
/// first, so later ones may use earlier ones, and never the other way round.
struct Platform {
    core::Desktop desktop = core::Desktop::macOS; ///< the desktop and keys that texts name
    std::shared_ptr<void> session; ///< what the backend's members share (connections); shared by all of them
    std::unique_ptr<MainQueue> mainQueue;
    std::unique_ptr<core::UserDefaults> userDefaults;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<ApplicationCatalog> applicationCatalog;
    std::unique_ptr<InputSources> inputSources;
    std::unique_ptr<EventTap> eventTap;
    std::unique_ptr<Accessibility> accessibility;
    std::unique_ptr<PermissionService> permissions;
    std::unique_ptr<StatusItem> statusItem;
    std::unique_ptr<ApplicationMenu> applicationMenu;
    std::unique_ptr<WindowTraits> windowTraits;
    std::unique_ptr<WindowList> windowList;
    std::unique_ptr<core::SleepAssertionClient> sleepAssertions;
    std::unique_ptr<Pasteboard> pasteboard;
    std::unique_ptr<KeyEvents> keyEvents;     ///< after the focus and the selection that decide how a key is posted
    std::unique_ptr<AreaCapture> areaCapture; ///< after the pasteboard, on which it puts pictures
    std::unique_ptr<HotKeys> hotKeys;
    std::unique_ptr<SecureInput> secureInput;
    std::unique_ptr<core::SecretStore> secretStore;
    std::unique_ptr<SerialQueue> vaultQueue; ///< after the secret store, which its tasks use
    std::unique_ptr<SerialQueue> imageQueue; ///< where pictures are decoded
    /// Where files are looked up; its tasks may outlive it (see ThreadSerialQueue).
    std::unique_ptr<SerialQueue> fileQueue;
    std::unique_ptr<FilePanel> filePanel;
    std::shared_ptr<const ProxySettings> proxySettings; ///< shared with the threads of transfers
    core::UrlSessionFactory urlSessions;                ///< after the proxy settings, which transfers read
    std::unique_ptr<SystemSymbols> systemSymbols;
    std::unique_ptr<ServicesMenu> servicesMenu;
    std::unique_ptr<Launcher> launcher;
    std::unique_ptr<LoginItemService> loginItem;
    std::unique_ptr<SystemInspector> systemInspector;
    std::unique_ptr<UpdaterService> updater; ///< absent where something else updates the program

    /// The settings of the program's previous edition, if it was used here.
    std::optional<core::PropertyListValue::Dictionary> legacyPreferences;

    /// Set when the desktop cannot observe the keyboard at all (Wayland): one sentence that says so to the user.
    std::optional<std::string> keyboardUnavailableReason;
};

struct LaunchOptions {
    bool atLogin = false; ///< the command line says that the session started the program
};

/// Why the program cannot run on this desktop: one line for standard error; the exit status is then 1.
struct PlatformError {
    std::string message;

    bool operator==(const PlatformError&) const = default;
};

/// A check before any window system library is used. It also prepares the process's environment, so it runs while the
/// process has one thread. None when the desktop can be used.
[[nodiscard]] std::optional<PlatformError> checkDesktop();

/// Makes what can be asked about the system even where `checkDesktop` fails. An application object of Qt must exist.
[[nodiscard]] std::unique_ptr<SystemInspector> makeSystemInspector();

/// Makes the backend of the desktop that the program was built for. Qt's application object must exist.
[[nodiscard]] std::variant<Platform, PlatformError> makePlatform(const LaunchOptions& options);

} // namespace quillane
