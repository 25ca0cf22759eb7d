// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Lifetime.hpp"
#include "core/support/Listeners.hpp"
#include "platform/linux/dbus/BusMessage.hpp"

#include <QSocketNotifier>
#include <QTimer>

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace quillane {

/// A connection to a message bus, driven by Qt's event loop. Main thread only. Only `wait` waits, and it runs only the
/// handlers of calls that were marked for it.
///
///     connection->call(methodCall(…), lifetime_, [this](DBusMessage* reply) { … });
///
/// A handler must not destroy the connection that calls it.
class BusConnection {
public:
    using Clock = std::chrono::steady_clock;

    /// Receives the reply, or nullptr on an error, when nobody owns the called name, and when the connection is lost.
    using ReplyHandler = std::function<void(DBusMessage* reply)>;

    enum class Delivery {
        fromEventLoop, ///< the handler runs from the event loop only
        alsoInWait,    ///< it may run inside `wait`, so it must only record
    };

    /// Connects to a bus on this machine (an address of "unix:"); nullptr when there is none. Does not wait for the
    /// bus: calls can be queued at once and are sent after authentication.
    [[nodiscard]] static std::unique_ptr<BusConnection> open(const std::string& address);

    ~BusConnection();

    [[nodiscard]] bool isLost() const { return lost_; }

    /// Sends a call. The handler is called once, never inside this function, and not when `owner` has gone.
    void call(BusMessage message, std::weak_ptr<void> owner, ReplyHandler handler,
              Delivery delivery = Delivery::fromEventLoop);

    /// Sends a signal, or a message without a reply.
    void send(BusMessage message);

    /// Asks the bus for signals (match rules of the D-Bus Specification).
    void addMatch(const std::string& rule);

    /// Undoes one `addMatch` of the same rule.
    void removeMatch(const std::string& rule);

    /// Every signal, in the order of arrival.
    core::Subscription onSignal(std::function<void(DBusMessage&)> handler) {
        return signals_.subscribe(std::move(handler));
    }

    /// The bus has closed the connection; it stays lost.
    core::Subscription onLost(std::function<void()> handler) { return losses_.subscribe(std::move(handler)); }

    /// Runs the handlers of signals that have already arrived, and of such answers that `wait` would handle. Does not
    /// wait.
    void dispatchArrivedSignals();

    /// Waits until the condition holds, but not beyond the deadline.
    void wait(const std::function<bool()>& condition, Clock::time_point deadline);

private:
    struct Pending {
        std::weak_ptr<void> owner;
        ReplyHandler handler;
        Delivery delivery;
    };

    struct Close {
        void operator()(::DBusConnection* connection) const;
    };

    explicit BusConnection(::DBusConnection* connection);

    void watch();
    void addWatch(DBusWatch* watch);
    void removeWatch(DBusWatch* watch);
    void toggleWatch(DBusWatch* watch);
    void process();
    void readAndWrite(int milliseconds);
    void takeArrived();
    [[nodiscard]] bool isForWait(DBusMessage& message) const;
    void deliverNow(const std::function<bool(DBusMessage&)>& which);
    void deliver(DBusMessage& message);
    void answer(std::uint32_t serial, DBusMessage* reply);
    void lose();

    std::map<DBusWatch*, std::unique_ptr<QSocketNotifier>> watches_; ///< what the connection waits for
    std::unique_ptr<::DBusConnection, Close> connection_;
    bool lost_ = false;
    std::map<std::uint32_t, Pending> pending_; ///< by serial number
    std::deque<Pending> unsent_;               ///< called after the connection was lost
    std::deque<BusMessage> arrived_;           ///< not yet delivered
    core::Listeners<DBusMessage&> signals_;
    core::Listeners<> losses_;
    QTimer drain_;
    core::Lifetime lifetime_;
};

/// The addresses ("unix:") of the user's and the system's buses; empty when the environment names none.
[[nodiscard]] std::string sessionBusAddress();
[[nodiscard]] std::string systemBusAddress();

} // namespace quillane
