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
#include <optional>
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

/// The numbers of the server's extensions on the wire. They stay the same when a connection is replaced. XCB itself
/// knows them no longer once the server has closed the connection, while events of it may still be dispatched.
struct X11Extensions {
    std::uint8_t xinputOpcode = 0;     ///< of generic events; 0 when the server has no XInput 2.2
    std::uint8_t xinputFirstEvent = 0; ///< of the first XInput protocol
    std::uint8_t xkbFirstEvent = 0;    ///< 0 when the server has no XKB
    std::uint8_t syncFirstEvent = 0;   ///< 0 when the server has no Sync 3.1
    std::uint8_t xfixesFirstEvent = 0;
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
/// A flood of events cannot keep the loop busy: a turn of it dispatches for at most 5 ms and leaves the rest to the
/// next one, and no more is read than can be dispatched. What is done once however many events call for it belongs into
/// `onTurnEnd`.
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

    /// As given to `open`; empty for the one in the environment.
    [[nodiscard]] const std::string& display() const { return display_; }

    /// For sending requests. While the connection is lost, requests on it are accepted and dropped.
    [[nodiscard]] xcb_connection_t* raw() const { return link_.connection.get(); }

    [[nodiscard]] xcb_window_t root() const { return link_.root; }

    [[nodiscard]] const X11Extensions& extensions() const { return link_.extensions; }

    [[nodiscard]] bool isLost() const { return lost_; }

    /// Every event, and every error of a request without reply (`response_type` 0), in the server's order. The event
    /// type includes the bit for sent events: mask with 0x7f. Of events that another client has sent (XSendEvent), only
    /// those that are meant to be are dispatched: SelectionNotify and ClientMessage.
    core::Subscription onEvent(EventHandler handler) { return events_.subscribe(std::move(handler)); }

    /// This turn of the loop has dispatched all events and replies that it will.
    core::Subscription onTurnEnd(std::function<void()> handler) { return turns_.subscribe(std::move(handler)); }

    /// True inside a handler: a turn's end will follow.
    [[nodiscard]] bool isDispatching() const { return isProcessing_; }

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

    /// Dispatches what has arrived, as a turn of the loop does. False when some of it is left for the next turn.
    bool process();

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

    /// A reply that has been read and waits until the events before it have been dispatched.
    struct Answer {
        Pending request;
        XReply<void> reply;
    };

    struct Reopening;

    X11Connection(std::string display, Link link);
    static tl::expected<Link, std::string> connectAndWait(const std::string& display);
    void watch();
    bool waitForInput(std::chrono::steady_clock::time_point end) const;
    void enqueue(Pending pending);
    void failPending();
    bool dispatchUntil(std::chrono::steady_clock::time_point end);
    bool dispatchNext();
    void receive();
    void takeAnswer();
    void dispatchEvent();
    void dispatchAnswer();
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
    std::optional<Answer> answer_;
    core::Listeners<const xcb_generic_event_t&> events_;
    core::Listeners<> turns_;
    core::Listeners<> losses_;
    core::Listeners<> openings_;
    std::shared_ptr<Reopening> reopening_; // shared with the thread that waits for the server
    std::unique_ptr<QSocketNotifier> reopeningNotifier_;
    std::unique_ptr<QSocketNotifier> notifier_;
    QTimer drain_;
    QTimer retry_;
};

} // namespace quillane
