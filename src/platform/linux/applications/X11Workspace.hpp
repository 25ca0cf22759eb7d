// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Lifetime.hpp"
#include "core/support/Listeners.hpp"
#include "platform/Workspace.hpp"
#include "platform/linux/applications/X11Clients.hpp"
#include "platform/linux/power/LogindWake.hpp"
#include "platform/linux/x11/X11Past.hpp"
#include "platform/linux/x11/X11Reading.hpp"

#include <map>
#include <memory>
#include <string>

#include <xcb/xcb.h>

namespace quillane {

class InstalledApplications;
class X11Connection;

/// The session as the window manager describes it on the root window (Extended Window Manager Hints 1.5). The
/// application in front is kept up to date from events; reading it asks nothing. A window that comes to the front
/// counts once its process and class are known, a few round trips later.
///
/// Without a window manager, the window with the input focus is in front, and only its application is known to run.
class X11Workspace final : public Workspace {
public:
    /// `installed` knows which application a window belongs to; shared with the application catalog.
    X11Workspace(X11Connection& connection, std::shared_ptr<InstalledApplications> installed, bool launchedAtLogin);
    ~X11Workspace() override;

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() const override;

    /// After the events that the server has sent by now, and once the application that they bring to the front has been
    /// identified.
    void whenFrontIsKnown(std::function<void()> callback) override;

    /// The application, or none, that was in front at a time of the server within the last minute; nothing when it was
    /// there so shortly that nobody could ask who it was. Complete inside a callback of `whenFrontIsKnown`.
    [[nodiscard]] std::optional<std::optional<RunningApplication>> frontAt(xcb_timestamp_t time) const;

    /// If none has a window: programs with this file name that are connected to the X server.
    [[nodiscard]] std::vector<RunningApplication> runningApplications(std::string_view bundleID) const override;

    /// Whether the process exists: an application may have closed its windows.
    [[nodiscard]] bool isRunning(pid_t pid) const override;

    /// Asks the window manager to activate the application's newest window (_NET_ACTIVE_WINDOW, EWMH 1.5).
    bool activateApplication(pid_t pid) override;

    /// Closes the application's windows as their close buttons would; a process without windows gets SIGTERM.
    bool terminate(pid_t pid) override;

    /// All programs with windows except this process; a process once for each class of its windows.
    [[nodiscard]] std::vector<RunningApplication> applications() const;

    [[nodiscard]] bool launchedAtLogin() const override { return launchedAtLogin_; }

    core::Subscription onDidActivateApplication(std::function<void()> callback) override;
    core::Subscription onDidWake(std::function<void()> callback) override;

private:
    struct Window {
        std::optional<RunningApplication> application; ///< none while it is not known
        std::string windowClass;                       ///< the second string of WM_CLASS in UTF-8; may be empty
        std::string instance;                          ///< the first one
        bool closes = false;                           ///< takes part in WM_DELETE_WINDOW
    };

    struct Reading;
    struct FrontReading;

    struct Atoms {
        xcb_atom_t supportingCheck, activeWindow, clientList, closeWindow, pid, protocols, deleteWindow;
    };

    [[nodiscard]] std::vector<RunningApplication> withoutWindows(std::string_view bundleID) const;
    void restart();
    void handle(const xcb_generic_event_t& event);
    void noteSwitch(xcb_timestamp_t time);
    void sendManager();
    void setManager(xcb_window_t window);
    void sendActiveWindow();
    void sendClients();
    void setClients(std::vector<xcb_window_t> clients);
    void readFocus();
    void sendFocus();
    void setFrontWindow(xcb_window_t window, const std::shared_ptr<FrontReading>& reading);
    std::shared_ptr<FrontReading> frontReading();
    void readWindow(xcb_window_t window, std::shared_ptr<FrontReading> front = nullptr);
    void readClass(const std::shared_ptr<Reading>& reading, xcb_window_t window, int levels);
    void finish(const Reading& reading);
    [[nodiscard]] std::optional<std::string> identifierOf(const Window& window) const;
    void identifyAgain();
    void setFront(std::optional<RunningApplication> application);
    void forgetOthers();
    void sendMessage(xcb_window_t to, xcb_window_t about, xcb_atom_t type, std::uint32_t first, std::uint32_t second);

    X11Connection& connection_;
    std::shared_ptr<InstalledApplications> installed_;
    const bool launchedAtLogin_;
    Atoms atoms_{};
    X11Reading managerReading_{[this] { sendManager(); }};
    X11Reading activeWindowReading_{[this] { sendActiveWindow(); }};
    X11Reading clientsReading_{[this] { sendClients(); }};
    X11Reading focusReading_{[this] { sendFocus(); }};
    xcb_window_t manager_ = XCB_WINDOW_NONE;     ///< the window by which the window manager shows that it is alive
    bool unmanaged_ = false;                     ///< there is no window manager, as far as is known
    xcb_window_t frontWindow_ = XCB_WINDOW_NONE; ///< active or focused; its application may not be known yet
    std::vector<xcb_window_t> clients_;          ///< in the order in which they were opened
    std::map<xcb_window_t, Window> windows_;     ///< of the clients and the front window
    std::optional<RunningApplication> front_;
    X11Past<std::optional<Window>> past_;      ///< what was in front; none where that was not identified in time
    std::weak_ptr<FrontReading> frontReading_; ///< shared by the pending answers that decide who is in front
    mutable X11Clients clientPrograms_;        ///< asks the server again while it is read
    core::Listeners<> activated_;
    LogindWake wake_;
    core::Lifetime lifetime_;
    core::Subscription events_;
    core::Subscription losses_;
    core::Subscription openings_;
    core::Subscription installations_;
};

} // namespace quillane
