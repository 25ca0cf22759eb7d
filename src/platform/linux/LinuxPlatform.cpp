// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/Platform.hpp"

#include "platform/common/ThreadSerialQueue.hpp"
#include "platform/common/curl/UrlSessions.hpp"
#include "platform/common/qt/QtLauncher.hpp"
#include "platform/common/qt/QtMainQueue.hpp"
#include "platform/linux/accessibility/AtspiAccessibility.hpp"
#include "platform/linux/accessibility/AtspiPermissionService.hpp"
#include "platform/linux/applications/DesktopEntryCatalog.hpp"
#include "platform/linux/applications/InstalledApplications.hpp"
#include "platform/linux/applications/TerminalFocus.hpp"
#include "platform/linux/applications/X11WindowList.hpp"
#include "platform/linux/applications/X11Workspace.hpp"
#include "platform/linux/capture/UnavailableAreaCapture.hpp"
#include "platform/linux/capture/X11AreaCapture.hpp"
#include "platform/linux/clipboard/QtPasteboard.hpp"
#include "platform/linux/clipboard/X11Pasteboard.hpp"
#include "platform/linux/clipboard/X11PrimarySelection.hpp"
#include "platform/linux/dbus/SessionBus.hpp"
#include "platform/linux/keyboard/FocusSecureInput.hpp"
#include "platform/linux/keyboard/LatinKeyPlaces.hpp"
#include "platform/linux/keyboard/UnavailableKeyboard.hpp"
#include "platform/linux/keyboard/X11EventTap.hpp"
#include "platform/linux/keyboard/X11HotKeys.hpp"
#include "platform/linux/keyboard/X11InputSources.hpp"
#include "platform/linux/keyboard/X11KeyEvents.hpp"
#include "platform/linux/keyboard/X11LatinKeys.hpp"
#include "platform/linux/keyboard/X11Session.hpp"
#include "platform/linux/power/LinuxSleepAssertions.hpp"
#include "platform/linux/power/X11Blanking.hpp"
#include "platform/linux/shell/CommandServicesMenu.hpp"
#include "platform/linux/shell/LineArtSymbols.hpp"
#include "platform/linux/shell/LinuxWindowTraits.hpp"
#include "platform/linux/shell/QtFilePanel.hpp"
#include "platform/linux/shell/TrayStatusItem.hpp"
#include "platform/linux/shell/WindowKeysApplicationMenu.hpp"
#include "platform/linux/system/AutostartLoginItem.hpp"
#include "platform/linux/system/LinuxDesktop.hpp"
#include "platform/linux/system/LinuxProxySettings.hpp"
#include "platform/linux/system/LinuxSystemInspector.hpp"
#include "platform/linux/system/PropertyListDefaults.hpp"
#include "platform/linux/system/SecretServiceStore.hpp"

#include <QApplication>
#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QLibraryInfo>

#include <cstdlib>
#include <memory>
#include <utility>

#include <xcb/xcb.h>

namespace quillane {

namespace {

bool canOpenDisplay(const std::string& display) {
    auto* connection = xcb_connect(display.c_str(), nullptr);
    const bool opened = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return opened;
}

/// Whether Qt can show windows on a compositor without an X server (Debian: qt6-wayland). Without the plugin it aborts.
bool hasWaylandPlugin() {
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
    return !plugins.entryList({QStringLiteral("libqwayland*")}).isEmpty();
}

/// The connections that members of the backend share.
struct LinuxSession {
    SessionBus bus;
    std::optional<X11Session> x11;
    std::unique_ptr<X11Connection> pasteboard; ///< its own, see X11Pasteboard
};

/// The keyboard, input sources and workspace on an X server that the whole session runs on.
X11Workspace& addX11(Platform& platform, const X11Session& session,
                     const std::shared_ptr<InstalledApplications>& installed, const LaunchOptions& options) {
    auto workspace = std::make_unique<X11Workspace>(*session.connection, installed, options.atLogin);
    auto& windows = *workspace;
    platform.applicationCatalog =
        std::make_unique<DesktopEntryCatalog>(installed, [&windows] { return windows.applications(); });
    platform.workspace = std::move(workspace);
    platform.windowList = std::make_unique<X11WindowList>(*session.connection);
    platform.inputSources = std::make_unique<X11InputSources>(*session.connection, *session.keyboard);
    platform.eventTap = std::make_unique<X11EventTap>(session, *platform.inputSources, *platform.mainQueue);
    return windows;
}

void addUnavailableKeyboard(Platform& platform, const LaunchOptions& options) {
    platform.workspace = std::make_unique<UnavailableWorkspace>(options.atLogin);
    platform.applicationCatalog = std::make_unique<DesktopEntryCatalog>(
        std::make_shared<InstalledApplications>(*platform.mainQueue), [] { return std::vector<RunningApplication>(); });
    platform.windowList = std::make_unique<UnavailableWindowList>();
    platform.inputSources = std::make_unique<UnavailableInputSources>();
    platform.eventTap = std::make_unique<UnavailableEventTap>();
}

/// The clipboard of the X server, which a Wayland session keeps in step with its own; without one, Qt's.
std::unique_ptr<Pasteboard> makePasteboard(const LinuxDesktop& desktop, LinuxSession& session,
                                           X11Workspace* workspace) {
    auto connection = X11Connection::open(desktop.x11Display);
    if (!connection) {
        return std::make_unique<QtPasteboard>();
    }
    session.pasteboard = std::move(*connection);
    X11Pasteboard::FindSource findSource;
    if (workspace != nullptr) {
        findSource = [workspace](xcb_timestamp_t time, std::function<void(PasteboardSource)> callback) {
            workspace->whenFrontIsKnown([workspace, time, callback = std::move(callback)] {
                auto front = workspace->frontAt(time);
                callback(front ? PasteboardSource{.application = std::move(*front)}
                               : PasteboardSource{.isKnown = false, .application = {}});
            });
        };
    }
    return std::make_unique<X11Pasteboard>(*session.pasteboard, X11PasteboardLimits{}, std::move(findSource));
}

/// Keys that are posted in the way that the application in front expects.
std::unique_ptr<KeyEvents> makeKeyEvents(const Platform& platform, const LinuxSession& session,
                                         std::shared_ptr<const InstalledApplications> installed) {
    const auto focus =
        std::make_shared<TerminalFocus>(*platform.accessibility, *platform.workspace, std::move(installed));
    X11KeyEvents::OffersSelection offersSelection;
    if (session.pasteboard) {
        offersSelection = [selection = std::make_shared<X11PrimarySelection>(
                               *session.pasteboard, *platform.pasteboard)] { return selection->offer(); };
    }
    return std::make_unique<X11KeyEvents>(
        *session.x11->connection, *session.x11->keyboard, [focus](pid_t pid) { return focus->styleIn(pid); },
        std::move(offersSelection));
}

} // namespace

std::optional<PlatformError> checkDesktop() {
    LinuxProxySettings::forgetHeaderVariable();
    const auto desktop = LinuxDesktop::fromEnvironment();
    if (canOpenDisplay(desktop.x11Display)) {
        // Windows, menus and the tray work the same on X11 and on the X server of a Wayland session.
        ::setenv("QT_QPA_PLATFORM", "xcb", 0);
        // Nothing here draws with OpenGL: its libraries would cost more memory than the rest of the agent.
        ::setenv("QT_XCB_GL_INTEGRATION", "none", 0);
        return std::nullopt;
    }
    if (!desktop.x11Display.empty()) {
        return PlatformError{"cannot open display " + desktop.x11Display};
    }
    if (!desktop.waylandSession) {
        return PlatformError{"cannot open display: DISPLAY is not set"};
    }
    if (!hasWaylandPlugin()) {
        return PlatformError{
            "cannot open display: this Wayland session has no X server, and Qt no Wayland platform plugin"};
    }
    return std::nullopt;
}

std::unique_ptr<SystemInspector> makeSystemInspector() {
    return std::make_unique<LinuxSystemInspector>(LinuxDesktop::fromEnvironment());
}

std::variant<Platform, PlatformError> makePlatform(const LaunchOptions& options) {
    const auto desktop = LinuxDesktop::fromEnvironment();
    QApplication::setWindowIcon(applicationIcon());
    Platform platform;
    platform.desktop = core::Desktop::linuxDesktop;
    const auto session = std::make_shared<LinuxSession>(); // shared only to hide its type
    platform.session = session;
    platform.mainQueue = std::make_unique<QtMainQueue>();
    platform.userDefaults = std::make_unique<PropertyListDefaults>(standardDefaultsFile());
    platform.keyboardUnavailableReason = keyboardUnavailableReason(desktop);
    std::shared_ptr<InstalledApplications> installed; // shared by workspace, catalog and key events
    X11Workspace* workspace = nullptr;
    if (platform.keyboardUnavailableReason) {
        addUnavailableKeyboard(platform, options);
    } else {
        auto x11 = X11Session::open(desktop.x11Display);
        if (!x11) {
            return PlatformError{x11.error()};
        }
        session->x11 = std::move(*x11);
        installed = std::make_shared<InstalledApplications>(*platform.mainQueue);
        workspace = &addX11(platform, *session->x11, installed, options);
    }
    platform.accessibility = std::make_unique<AtspiAccessibility>(session->bus);
    platform.permissions = std::make_unique<AtspiPermissionService>(session->bus);
    platform.statusItem = std::make_unique<TrayStatusItem>();
    platform.applicationMenu = std::make_unique<WindowKeysApplicationMenu>(
        session->x11 ? [keyboard = session->x11->keyboard.get()](
                           std::uint32_t key, char32_t) { return latinKey(keyboard->keymap(), keyboard->group(), key); }
                     : WindowKeysApplicationMenu::LatinKey(latinKeyBySymbol)); // Wayland does not show layouts to
                                                                               // programs
    platform.windowTraits = std::make_unique<LinuxWindowTraits>();
    platform.sleepAssertions = std::make_unique<LinuxSleepAssertions>(
        session->bus, session->x11 ? std::make_unique<X11Blanking>(*session->x11->connection) : nullptr);
    platform.pasteboard = makePasteboard(desktop, *session, workspace);
    if (session->x11) {
        platform.keyEvents = makeKeyEvents(platform, *session, installed);
        platform.areaCapture = std::make_unique<X11AreaCapture>(*platform.pasteboard, *platform.mainQueue);
    } else {
        platform.keyEvents = std::make_unique<UnavailableKeyEvents>();
        platform.areaCapture = std::make_unique<UnavailableAreaCapture>();
    }
    if (session->x11 && session->pasteboard) {
        platform.hotKeys = std::make_unique<X11HotKeys>(*session->pasteboard, *session->x11->keyboard);
    } else {
        platform.hotKeys = std::make_unique<UnavailableHotKeys>();
    }
    platform.secureInput = std::make_unique<FocusSecureInput>(*platform.accessibility, *platform.workspace);
    platform.secretStore = std::make_unique<SecretServiceStore>();
    platform.vaultQueue = std::make_unique<ThreadSerialQueue>();
    platform.imageQueue = std::make_unique<ThreadSerialQueue>();
    platform.fileQueue = std::make_unique<ThreadSerialQueue>(ThreadSerialQueue::AtEnd::leaves);
    platform.filePanel = std::make_unique<QtFilePanel>();
    platform.proxySettings = std::make_shared<LinuxProxySettings>();
    platform.urlSessions = makeUrlSessions(*platform.mainQueue, platform.proxySettings);
    platform.systemSymbols = std::make_unique<LineArtSymbols>();
    const auto program = QCoreApplication::applicationFilePath().toStdString();
    platform.servicesMenu = std::make_unique<CommandServicesMenu>(
        isNautilusInstalled() ? std::optional(NautilusScript(program, nautilusScriptsFolder())) : std::nullopt);
    QGuiApplication::setWindowIcon(applicationIcon());
    platform.launcher = std::make_unique<QtLauncher>();
    platform.loginItem = std::make_unique<AutostartLoginItem>(program, autostartFolder());
    platform.systemInspector = makeSystemInspector();
    return platform;
}

} // namespace quillane
