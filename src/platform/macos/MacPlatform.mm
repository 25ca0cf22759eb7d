// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/Platform.hpp"

#include "core/preferences/InstallationMigration.hpp"
#include "platform/common/ThreadSerialQueue.hpp"
#include "platform/common/curl/UrlSessions.hpp"
#include "platform/common/qt/QtLauncher.hpp"
#include "platform/common/qt/QtMainQueue.hpp"
#include "platform/macos/accessibility/MacAccessibility.hpp"
#include "platform/macos/accessibility/MacPermissionService.hpp"
#include "platform/macos/applications/MacApplicationCatalog.hpp"
#include "platform/macos/applications/MacApplicationIcon.hpp"
#include "platform/macos/applications/MacWindowList.hpp"
#include "platform/macos/applications/MacWorkspace.hpp"
#include "platform/macos/capture/MacAreaCapture.hpp"
#include "platform/macos/clipboard/MacPasteboard.hpp"
#include "platform/macos/keyboard/MacEventTap.hpp"
#include "platform/macos/keyboard/MacHotKeys.hpp"
#include "platform/macos/keyboard/MacInputSources.hpp"
#include "platform/macos/keyboard/MacKeyEvents.hpp"
#include "platform/macos/keyboard/MacSecureInput.hpp"
#include "platform/macos/power/MacSleepAssertions.hpp"
#include "platform/macos/shell/MacApplicationMenu.hpp"
#include "platform/macos/shell/MacFilePanel.hpp"
#include "platform/macos/shell/MacLaunch.hpp"
#include "platform/macos/shell/MacServicesMenu.hpp"
#include "platform/macos/shell/MacStatusItem.hpp"
#include "platform/macos/shell/MacSystemSymbols.hpp"
#include "platform/macos/shell/MacWindowTraits.hpp"
#include "platform/macos/system/MacLoginItemService.hpp"
#include "platform/macos/system/MacProxySettings.hpp"
#include "platform/macos/system/MacSecretStore.hpp"
#include "platform/macos/system/MacSystemInspector.hpp"
#include "platform/macos/system/MacUpdaterService.hpp"
#include "platform/macos/system/MacUserDefaults.hpp"

#include <QGuiApplication>

/// Resources of a static library are available once registered, which must happen outside every namespace.
static void initializeResources() {
    Q_INIT_RESOURCE(symbols);
}

namespace quillane {

std::optional<PlatformError> checkDesktop() {
    return std::nullopt; // a process of the user's session has the window server, or is not started
}

std::unique_ptr<SystemInspector> makeSystemInspector() {
    return std::make_unique<MacSystemInspector>();
}

std::variant<Platform, PlatformError> makePlatform(const LaunchOptions& options) {
    initializeResources();
    qputenv("QT_MAC_SET_RAISE_PROCESS", "0"); // otherwise raising a panel brings the whole application to the front
    // Otherwise Qt's application delegate takes the focus as soon as launching is finished, at every login.
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
    QGuiApplication::setWindowIcon(applicationIcon());
    leaveDockIconToSystem();
    Platform platform;
    platform.desktop = core::Desktop::macOS;
    platform.mainQueue = std::make_unique<QtMainQueue>();
    platform.userDefaults = std::make_unique<MacUserDefaults>();
    platform.legacyPreferences = preferencesDomain(core::installationMigration::legacyBundleID);
    platform.workspace =
        std::make_unique<MacWorkspace>(options.atLogin); // must exist before launching is finished, to observe it
    platform.applicationCatalog = std::make_unique<MacApplicationCatalog>();
    finishLaunching();
    platform.inputSources = std::make_unique<MacInputSources>();
    platform.eventTap = std::make_unique<MacEventTap>();
    platform.accessibility = std::make_unique<MacAccessibility>();
    platform.permissions = std::make_unique<MacPermissionService>();
    platform.statusItem = std::make_unique<MacStatusItem>();
    platform.applicationMenu = std::make_unique<MacApplicationMenu>();
    platform.windowTraits = std::make_unique<MacWindowTraits>();
    platform.windowList = std::make_unique<MacWindowList>();
    platform.sleepAssertions = std::make_unique<MacSleepAssertions>();
    platform.pasteboard = std::make_unique<MacPasteboard>();
    platform.keyEvents = std::make_unique<MacKeyEvents>();
    platform.areaCapture = std::make_unique<MacAreaCapture>();
    platform.hotKeys = std::make_unique<MacHotKeys>();
    platform.secureInput = std::make_unique<MacSecureInput>();
    platform.secretStore = std::make_unique<MacSecretStore>();
    platform.vaultQueue = std::make_unique<ThreadSerialQueue>();
    platform.imageQueue = std::make_unique<ThreadSerialQueue>();
    platform.fileQueue = std::make_unique<ThreadSerialQueue>(ThreadSerialQueue::AtEnd::leaves);
    platform.filePanel = std::make_unique<MacFilePanel>();
    platform.proxySettings = std::make_shared<MacProxySettings>();
    platform.urlSessions = makeUrlSessions(*platform.mainQueue, platform.proxySettings);
    platform.systemSymbols = std::make_unique<MacSystemSymbols>();
    platform.servicesMenu = std::make_unique<MacServicesMenu>();
    platform.launcher = std::make_unique<QtLauncher>();
    platform.loginItem = std::make_unique<MacLoginItemService>();
    platform.systemInspector = makeSystemInspector();
    platform.updater = makeMacUpdaterService();
    return platform;
}

} // namespace quillane
