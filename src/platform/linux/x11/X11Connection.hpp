// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Listeners.hpp"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <tl/expected.hpp>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <xcb/xcb.h>

namespace quillane {

struct XFree {
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply or event that XCB has allocated.
template <typename T>
using XReply = std::unique_ptr<T, XFree>;

/// The numbers of the server's extensions on the wire. They stay the same when a connection is replaced.
struct X11Extensions {
    std::uint8_t xinputOpcode = 0;   ///< of generic events; 0 when the server has no XInput 2.2
    std::uint8_t xkbFirstEvent = 0;  ///< 0 when the server has no XKB
    std::uint8_t syncFirstEvent = 0; ///< 0 when the server has no Sync 3.1
    bool hasXTest = false;
    bool hasXFixes = false;
    bool hasClientIds = false; ///< X-Resource 1.2: the server knows the process behind a window
};

/// The agent's own connection to the X server, driven by Qt's event loop. Main thread only.
///
/// Another program may grab the whole server for as long as it likes, so nothing here waits for an answer once the
/// program runs: requests are sent with `xcb_…` on `raw()` and answered through `await`.
///
///     subscription_ = connection.onEvent([this](const xcb_generic_event_t& event) { … });
///     connection.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
///     const auto cookie = xcb_get_property(connection.raw(), …);
///     connection.await<xcb_get_property_reply_t>(cookie, lifetime_, [this](const auto* reply) { … });
///     connection.flush();
///
/// A connection that the server closes is replaced automatically, without blocking. `onOpened` then announces that
/// everything selected or created on it must be made again (`selectRootEvents` excepted). Atoms and other clients'
/// windows keep their numbers. A handler must not destroy the connection.
class X11Connection {
public:
    using EventHandler = std::function<void(const xcb_generic_event_t&)>;

    /// Connects and queries the extensions; waits for the server. The error is one line for the user.
    [[nodiscard]] static tl::expected<std::unique_ptr<X11Connection>, std::string> open(const std::string& display);

    ~X11Connection();

    /// For sending requests. While the connection is lost, requests on it are accepted and dropped.
    [[nodiscard]] xcb_connection_t* raw() const { return link_.connection.get(); }

    [[nodiscard]] xcb_window_t root() const { return link_.root; }

    [[nodiscard]] const X11Extensions& extensions() const { return link_.extensions; }

    [[nodiscard]] bool isLost() const { return lost_; }

    /// Every event, and every error of a request without reply (`response_type` 0), in the server's order. The event
    /// type includes the bit for sent events: mask with 0x7f.
    core::Subscription onEvent(EventHandler handler) { return events_.subscribe(std::move(handler)); }

    /// The connection is lost. Handlers of outstanding requests have been called.
    core::Subscription onLost(std::function<void()> handler) { return losses_.subscribe(std::move(handler)); }

    /// A new connection has replaced the lost one.
    core::Subscription onOpened(std::function<void()> handler) { return openings_.subscribe(std::move(handler)); }

    /// Adds to the events selected on the root window, where a client has one mask that all users share.
    void selectRootEvents(std::uint32_t eventMask);

    /// Calls the handler with the reply, or with nullptr on an error and when the connection is lost. Not called once
    /// `owner` has been destroyed. Replies and events are dispatched in the order in which the server sent them.
    template <typename Reply, typename Cookie>
    void await(Cookie cookie, std::weak_ptr<void> owner, std::function<void(const Reply*)> handler) {
        enqueue({cookie.sequence, std::move(owner),
                 [handler = std::move(handler)](const void* reply) { handler(static_cast<const Reply*>(reply)); }});
    }

    /// Sends the requests made so far. Requests made inside a handler are sent automatically.
    void flush();

    /// Waits until every outstanding request has been answered, and dispatches what arrives meanwhile. False on a
    /// timeout.
    bool settle(std::chrono::milliseconds timeout);

    /// The atoms of these names. Waits for the server: use it at start-up only.
    [[nodiscard]] std::vector<xcb_atom_t> internAtoms(std::span<const std::string_view> names);

private:
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    struct Link {
        std::unique_ptr<xcb_connection_t, Disconnect> connection;
        xcb_window_t root = 0;
        X11Extensions extensions;
    };

    struct Pending {
        unsigned sequence;
        std::weak_ptr<void> owner;
        std::function<void(const void*)> handler;
    };

    struct Reopening;

    X11Connection(std::string display, Link link);
    static tl::expected<Link, std::string> connectAndWait(const std::string& display);
    void watch();
    bool waitForInput(std::chrono::steady_clock::time_point end) const;
    void enqueue(Pending pending);
    void failPending();
    void process();
    void receive();
    void dispatchEvent();
    bool dispatchReply();
    void lose();
    void startReopening();
    void finishReopening();

    std::string display_;
    Link link_;
    bool lost_ = false;
    bool isProcessing_ = false;
    std::uint32_t rootMask_ = 0;
    std::deque<Pending> pending_;
    std::deque<XReply<xcb_generic_event_t>> received_;
    core::Listeners<const xcb_generic_event_t&> events_;
    core::Listeners<> losses_;
    core::Listeners<> openings_;
    std::shared_ptr<Reopening> reopening_; // shared with the thread that waits for the server
    std::unique_ptr<QSocketNotifier> reopeningNotifier_;
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer drain_;
    QTimer retry_;
};

} // namespace quillane
