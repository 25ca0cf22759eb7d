// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/applications/X11Workspace.hpp"

#include "platform/linux/applications/InstalledApplications.hpp"
#include "platform/linux/applications/X11WindowNames.hpp"
#include "platform/linux/x11/X11Connection.hpp"
#include "platform/linux/x11/X11Properties.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <span>

#include <unistd.h>

#include <xcb/res.h>

namespace quillane {

namespace {

constexpr xcb_window_t noWindow = XCB_WINDOW_NONE;
constexpr std::uint32_t maximumPropertyLength = 4096; // in units of four bytes
constexpr std::uint32_t maximumClients = 1024;
constexpr int highestLevel = 16;           // maximum steps from the focus up to a window with a class
constexpr std::uint32_t sourceIsPager = 2; // the source of the request is the user, not an application

std::string processName(pid_t pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

} // namespace

/// The combined answers about one window.
struct X11Workspace::Reading {
    xcb_window_t window = noWindow;
    pid_t serverSaid = 0; ///< from the X-Resource extension, correct in containers too
    pid_t windowSaid = 0; ///< from _NET_WM_PID
    WindowNames names;
    bool closes = false;
    std::shared_ptr<FrontReading> front; ///< set for the window in front
};

/// Held by the handlers of the answers that decide who is in front. The last one that goes ends the reading.
struct X11Workspace::FrontReading {
    FrontReading() = default;
    FrontReading(const FrontReading&) = delete;
    FrontReading& operator=(const FrontReading&) = delete;

    ~FrontReading() {
        for (const auto& callback : waiting) {
            callback();
        }
    }

    std::vector<std::function<void()>> waiting;
};

X11Workspace::X11Workspace(X11Connection& connection, std::shared_ptr<InstalledApplications> installed,
                           bool launchedAtLogin)
    : connection_(connection),
      installed_(std::move(installed)),
      launchedAtLogin_(launchedAtLogin),
      clientPrograms_(connection) {
    constexpr std::array<std::string_view, 7> names{
        "_NET_SUPPORTING_WM_CHECK", "_NET_ACTIVE_WINDOW", "_NET_CLIENT_LIST",
        "_NET_CLOSE_WINDOW",        "_NET_WM_PID",        "WM_PROTOCOLS",
        "WM_DELETE_WINDOW"};
    const auto atoms = connection.internAtoms(names);
    atoms_ = {atoms[0], atoms[1], atoms[2], atoms[3], atoms[4], atoms[5], atoms[6]};
    events_ = connection.onEvent([this](const xcb_generic_event_t& event) { handle(event); });
    losses_ = connection.onLost([this] {
        frontWindow_ = manager_ = noWindow;
        unmanaged_ = false;
        clients_.clear();
        windows_.clear();
        setFront(std::nullopt);
    });
    openings_ = connection.onOpened([this] { restart(); });
    installations_ = installed_->onChanged([this] { identifyAgain(); });
    connection.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_FOCUS_CHANGE);
    restart();
}

X11Workspace::~X11Workspace() = default;

std::optional<RunningApplication> X11Workspace::frontmostApplication() const {
    return front_;
}

std::vector<RunningApplication> X11Workspace::runningApplications(std::string_view bundleID) const {
    auto found = applications();
    std::erase_if(found, [&](const RunningApplication& one) { return one.bundleID != bundleID; });
    return found.empty() && !bundleID.empty() ? withoutWindows(bundleID) : found;
}

/// An agent may have no window and is recognised by its program.
std::vector<RunningApplication> X11Workspace::withoutWindows(std::string_view bundleID) const {
    std::vector<RunningApplication> found;
    for (const auto pid : clientPrograms_.running(
             [&](std::string_view program) { return installed_->index().identifierOf(program) == bundleID; })) {
        found.push_back({.pid = pid, .bundleID = std::string(bundleID), .name = processName(pid)});
    }
    return found;
}

std::vector<RunningApplication> X11Workspace::applications() const {
    std::vector<RunningApplication> found;
    const auto add = [&](xcb_window_t window) {
        const auto entry = windows_.find(window);
        if (entry == windows_.end() || !entry->second.application) {
            return;
        }
        const auto& application = *entry->second.application;
        const auto isKnown = [&](const RunningApplication& one) {
            return one.pid == application.pid && one.bundleID == application.bundleID;
        };
        if (application.pid != getpid() && std::ranges::none_of(found, isKnown)) {
            found.push_back(application);
        }
    };
    std::ranges::for_each(clients_, add);
    add(frontWindow_);
    return found;
}

bool X11Workspace::isRunning(pid_t pid) const {
    return pid > 0 && (::kill(pid, 0) == 0 || errno == EPERM);
}

bool X11Workspace::activateApplication(pid_t pid) {
    if (front_ && front_->pid == pid) {
        return true; // another one of its windows would come to the front
    }
    for (auto window = clients_.rbegin(); manager_ != noWindow && window != clients_.rend(); ++window) {
        const auto known = windows_.find(*window);
        if (known != windows_.end() && known->second.application && known->second.application->pid == pid) {
            sendMessage(connection_.root(), *window, atoms_.activeWindow, sourceIsPager, XCB_CURRENT_TIME);
            connection_.flush();
            return true;
        }
    }
    return false;
}

bool X11Workspace::terminate(pid_t pid) {
    if (pid <= 1 || pid == getpid()) {
        return false;
    }
    bool asked = false;
    for (const auto& [window, known] : windows_) {
        if (!known.application || known.application->pid != pid || !known.closes) {
            continue;
        }
        if (manager_ != noWindow) {
            sendMessage(connection_.root(), window, atoms_.closeWindow, XCB_CURRENT_TIME, sourceIsPager);
        } else {
            sendMessage(window, window, atoms_.protocols, atoms_.deleteWindow, XCB_CURRENT_TIME);
        }
        asked = true;
    }
    connection_.flush();
    return asked || kill(pid, SIGTERM) == 0;
}

void X11Workspace::whenFrontIsKnown(std::function<void()> callback) {
    const auto identified = [this, alive = lifetime_.watch(), callback = std::move(callback)] {
        if (alive) {
            installed_->whenRead([alive, callback] {
                if (alive) {
                    callback();
                }
            });
        }
    };
    // The answer follows every event that precedes the request.
    connection_.await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection_.raw()), lifetime_,
                                                   [this, identified](const xcb_get_input_focus_reply_t*) {
                                                       if (const auto reading = frontReading_.lock()) {
                                                           reading->waiting.emplace_back(identified);
                                                       } else {
                                                           identified();
                                                       }
                                                   });
    connection_.flush();
}

std::optional<std::optional<RunningApplication>> X11Workspace::frontAt(xcb_timestamp_t time) const {
    const auto* window = past_.at(time);
    if (window == nullptr) {
        return front_;
    }
    if (!*window) {
        return std::nullopt;
    }
    auto application = (*window)->application;
    if (application) {
        application->bundleID = identifierOf(**window);
    }
    return application;
}

/// The window manager activates another window.
void X11Workspace::noteSwitch(xcb_timestamp_t time) {
    const bool isIdentified = frontReading_.expired();
    const auto known = windows_.find(frontWindow_);
    past_.change(time, isIdentified ? std::optional(known != windows_.end() ? known->second : Window{}) : std::nullopt);
}

core::Subscription X11Workspace::onDidActivateApplication(std::function<void()> callback) {
    return activated_.subscribe(std::move(callback));
}

core::Subscription X11Workspace::onDidWake(std::function<void()> callback) {
    return wake_.onDidWake(std::move(callback));
}

void X11Workspace::restart() {
    managerReading_.request();
    connection_.flush();
}

void X11Workspace::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY: {
        const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (property.atom == atoms_.supportingCheck) {
            managerReading_.request(); // set on the root first, then on the window manager's own window
        } else if (property.window != connection_.root()) {
            return;
        } else if (property.atom == atoms_.activeWindow) {
            noteSwitch(property.time);
            activeWindowReading_.request();
        } else if (property.atom == atoms_.clientList) {
            clientsReading_.request();
        }
        return;
    }
    case XCB_DESTROY_NOTIFY:
        if (manager_ != noWindow && reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == manager_) {
            setManager(noWindow);
        }
        return;
    case XCB_FOCUS_IN:
    case XCB_FOCUS_OUT: {
        const auto mode = reinterpret_cast<const xcb_focus_in_event_t&>(event).mode;
        if (mode != XCB_NOTIFY_MODE_GRAB && mode != XCB_NOTIFY_MODE_UNGRAB) {
            readFocus();
        }
        return;
    }
    default:
        return;
    }
}

/// The reading in progress, or a new one.
std::shared_ptr<X11Workspace::FrontReading> X11Workspace::frontReading() {
    auto reading = frontReading_.lock();
    if (!reading) {
        reading = std::make_shared<FrontReading>();
        frontReading_ = reading;
    }
    return reading;
}

void X11Workspace::sendManager() {
    const auto cookie =
        xcb_get_property(connection_.raw(), 0, connection_.root(), atoms_.supportingCheck, XCB_ATOM_WINDOW, 0, 1);
    connection_.await<xcb_get_property_reply_t>(cookie, lifetime_, [this, front = frontReading()](const auto* reply) {
        // The property may be stale: a living window manager's window names itself.
        const auto window = firstItem(reply);
        if (window == noWindow) {
            setManager(noWindow);
            managerReading_.finish();
            return;
        }
        auto* c = connection_.raw();
        const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(c, window, XCB_CW_EVENT_MASK, &mask);
        connection_.await<xcb_get_property_reply_t>(
            xcb_get_property(c, 0, window, atoms_.supportingCheck, XCB_ATOM_WINDOW, 0, 1), lifetime_,
            [this, window, front](const auto* own) {
                setManager(firstItem(own) == window ? window : noWindow);
                managerReading_.finish();
            });
    });
}

void X11Workspace::setManager(xcb_window_t window) {
    if (window == noWindow && manager_ != noWindow) {
        setClients({});
    }
    manager_ = window;
    unmanaged_ = window == noWindow;
    if (!unmanaged_) {
        clientsReading_.request();
        activeWindowReading_.request();
    } else {
        readFocus();
    }
}

void X11Workspace::sendActiveWindow() {
    const auto cookie =
        xcb_get_property(connection_.raw(), 0, connection_.root(), atoms_.activeWindow, XCB_ATOM_WINDOW, 0, 1);
    connection_.await<xcb_get_property_reply_t>(cookie, lifetime_, [this, front = frontReading()](const auto* reply) {
        if (manager_ != noWindow) {
            setFrontWindow(firstItem(reply), front);
        }
        activeWindowReading_.finish();
    });
}

void X11Workspace::sendClients() {
    const auto cookie = xcb_get_property(connection_.raw(), 0, connection_.root(), atoms_.clientList, XCB_ATOM_WINDOW,
                                         0, maximumClients);
    connection_.await<xcb_get_property_reply_t>(cookie, lifetime_, [this](const xcb_get_property_reply_t* reply) {
        if (manager_ != noWindow) {
            const auto all = items(reply);
            setClients({all.begin(), all.end()});
        }
        clientsReading_.finish();
    });
}

void X11Workspace::setClients(std::vector<xcb_window_t> clients) {
    clients_ = std::move(clients);
    forgetOthers();
    for (const auto window : clients_) {
        if (!windows_.contains(window)) {
            readWindow(window);
        }
    }
    // A window manager may leave the last window active after it has closed.
    if (frontWindow_ != noWindow && std::ranges::find(clients_, frontWindow_) == clients_.end()) {
        readWindow(frontWindow_);
    }
}

void X11Workspace::readFocus() {
    if (unmanaged_) {
        focusReading_.request();
    }
}

void X11Workspace::sendFocus() {
    connection_.await<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus(connection_.raw()), lifetime_, [this, front = frontReading()](const auto* reply) {
            if (!unmanaged_) {
                focusReading_.finish();
                return;
            }
            const auto window = reply != nullptr ? reply->focus : xcb_window_t{XCB_INPUT_FOCUS_NONE};
            const bool isWindow = window != XCB_INPUT_FOCUS_NONE && window != XCB_INPUT_FOCUS_POINTER_ROOT &&
                                  window != connection_.root();
            if (isWindow) {
                const std::uint32_t mask = XCB_EVENT_MASK_FOCUS_CHANGE; // to notice when it loses the focus
                xcb_change_window_attributes(connection_.raw(), window, XCB_CW_EVENT_MASK, &mask);
            }
            setFrontWindow(isWindow ? window : noWindow, front);
            focusReading_.finish();
        });
}

void X11Workspace::setFrontWindow(xcb_window_t window, const std::shared_ptr<FrontReading>& reading) {
    frontWindow_ = window;
    forgetOthers();
    if (window == noWindow) {
        setFront(std::nullopt);
    } else {
        readWindow(window, reading); // even if it is known: window numbers are reused
    }
}

void X11Workspace::readWindow(xcb_window_t window, std::shared_ptr<FrontReading> front) {
    auto* c = connection_.raw();
    windows_.try_emplace(window);
    const auto reading = std::make_shared<Reading>(); // shared by the handlers of its answers
    reading->window = window;
    reading->front = std::move(front);
    if (connection_.extensions().hasClientIds) {
        const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
        connection_.await<xcb_res_query_client_ids_reply_t>(
            xcb_res_query_client_ids(c, 1, &spec), lifetime_,
            [reading](const auto* reply) { reading->serverSaid = localProcess(reply); });
    }
    connection_.await<xcb_get_property_reply_t>(
        xcb_get_property(c, 0, window, atoms_.pid, XCB_ATOM_CARDINAL, 0, 1), lifetime_,
        [reading](const auto* reply) { reading->windowSaid = static_cast<pid_t>(firstItem(reply)); });
    connection_.await<xcb_get_property_reply_t>(
        xcb_get_property(c, 0, window, atoms_.protocols, XCB_ATOM_ATOM, 0, maximumPropertyLength), lifetime_,
        [this, reading](const auto* reply) {
            reading->closes = std::ranges::count(items(reply), atoms_.deleteWindow) > 0;
        });
    readClass(reading, window, highestLevel);
}

void X11Workspace::readClass(const std::shared_ptr<Reading>& reading, xcb_window_t window, int levels) {
    auto* c = connection_.raw();
    connection_.await<xcb_get_property_reply_t>(
        xcb_get_property(c, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, maximumPropertyLength), lifetime_,
        [reading](const auto* reply) { reading->names = windowNames(reply); });
    // The focus may be on a child of the window with the class.
    connection_.await<xcb_query_tree_reply_t>(
        xcb_query_tree(c, window), lifetime_, [this, reading, levels](const auto* reply) {
            const bool climbs = reading->names.windowClass.empty() && levels > 0 && reply != nullptr &&
                                reply->parent != noWindow && reply->parent != connection_.root();
            if (climbs) {
                readClass(reading, reply->parent, levels - 1);
            } else {
                finish(*reading);
            }
        });
}

void X11Workspace::finish(const Reading& reading) {
    const auto entry = windows_.find(reading.window);
    if (entry == windows_.end()) {
        return; // closed meanwhile
    }
    const auto pid = reading.serverSaid > 0 ? reading.serverSaid : reading.windowSaid;
    auto& known = entry->second;
    known.closes = reading.closes;
    known.windowClass = reading.names.windowClass;
    known.instance = reading.names.instance;
    known.application.reset();
    if (pid > 0) {
        known.application =
            RunningApplication{.pid = pid,
                               .bundleID = identifierOf(known),
                               .name = known.windowClass.empty() ? processName(pid) : known.windowClass};
    }
    if (reading.window == frontWindow_) {
        setFront(known.application);
    }
}

std::optional<std::string> X11Workspace::identifierOf(const Window& window) const {
    if (window.windowClass.empty()) {
        return std::nullopt;
    }
    if (!installed_->index().knows(window.windowClass, window.instance)) {
        installed_->lookFor(window.windowClass);
    }
    return installed_->index().identifierOf(window.windowClass, window.instance);
}

/// More may be known about the windows now. That is not a switch, so nothing is announced.
void X11Workspace::identifyAgain() {
    for (auto& [window, known] : windows_) {
        if (known.application) {
            known.application->bundleID = identifierOf(known);
        }
        if (window == frontWindow_ && front_ && known.application && front_->pid == known.application->pid) {
            front_ = known.application;
        }
    }
}

void X11Workspace::setFront(std::optional<RunningApplication> application) {
    if (application == front_) {
        return;
    }
    front_ = std::move(application);
    if (front_) {
        activated_.notify();
    }
}

void X11Workspace::forgetOthers() {
    auto kept = clients_;
    kept.push_back(frontWindow_);
    std::ranges::sort(kept);
    std::erase_if(windows_, [&](const auto& entry) { return !std::ranges::binary_search(kept, entry.first); });
}

void X11Workspace::sendMessage(xcb_window_t to, xcb_window_t about, xcb_atom_t type, std::uint32_t first,
                               std::uint32_t second) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = about;
    message.type = type;
    message.data.data32[0] = first;
    message.data.data32[1] = second;
    const std::uint32_t mask =
        to == connection_.root() ? XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT : 0;
    xcb_send_event(connection_.raw(), 0, to, mask, reinterpret_cast<const char*>(&message));
}

} // namespace quillane
