// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/dbus/BusConnection.hpp"

#include <cstdlib>
#include <filesystem>
#include <utility>

namespace quillane {

namespace {

/// The address without transports that would start programs or query name servers.
std::string onThisMachine(std::string_view address) {
    std::string kept;
    while (!address.empty()) {
        const auto end = std::min(address.find(';'), address.size());
        const auto one = address.substr(0, end);
        if (one.starts_with("unix:")) {
            kept.append(kept.empty() ? "" : ";").append(one);
        }
        address.remove_prefix(std::min(end + 1, address.size()));
    }
    return kept;
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

} // namespace

void BusConnection::Close::operator()(::DBusConnection* connection) const {
    dbus_connection_set_watch_functions(connection, nullptr, nullptr, nullptr, nullptr, nullptr);
    dbus_connection_close(connection);
    dbus_connection_unref(connection);
}

std::unique_ptr<BusConnection> BusConnection::open(const std::string& address) {
    const auto local = onThisMachine(address);
    if (local.empty()) {
        return nullptr;
    }
    dbus_threads_init_default(); // Qt uses the same library on a thread of its own
    auto* connection = dbus_connection_open_private(local.c_str(), nullptr);
    if (connection == nullptr) {
        return nullptr;
    }
    dbus_connection_set_exit_on_disconnect(connection, 0);
    return std::unique_ptr<BusConnection>(new BusConnection(connection));
}

BusConnection::BusConnection(::DBusConnection* connection) : connection_(connection) {
    drain_.setSingleShot(true);
    drain_.callOnTimeout([this] { process(); });
    watch();
    // The bus answers no other call before this one.
    call(methodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello"), lifetime_,
         [this](DBusMessage* reply) {
             if (reply == nullptr && !lost_) {
                 lose();
             }
         });
}

BusConnection::~BusConnection() = default;

void BusConnection::watch() {
    dbus_connection_set_watch_functions(
        connection_.get(),
        [](DBusWatch* watch, void* self) -> dbus_bool_t {
            static_cast<BusConnection*>(self)->addWatch(watch);
            return 1;
        },
        [](DBusWatch* watch, void* self) { static_cast<BusConnection*>(self)->removeWatch(watch); },
        [](DBusWatch* watch, void* self) { static_cast<BusConnection*>(self)->toggleWatch(watch); }, this, nullptr);
}

void BusConnection::addWatch(DBusWatch* watch) {
    const bool writes = (dbus_watch_get_flags(watch) & DBUS_WATCH_WRITABLE) != 0;
    auto notifier = std::make_unique<QSocketNotifier>(dbus_watch_get_unix_fd(watch),
                                                      writes ? QSocketNotifier::Write : QSocketNotifier::Read);
    notifier->setEnabled(dbus_watch_get_enabled(watch) != 0);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), [this, watch, writes] {
        dbus_watch_handle(watch, writes ? DBUS_WATCH_WRITABLE : DBUS_WATCH_READABLE);
        process();
    });
    watches_.emplace(watch, std::move(notifier));
}

void BusConnection::removeWatch(DBusWatch* watch) {
    const auto found = watches_.find(watch);
    if (found != watches_.end()) {
        found->second->setEnabled(false);
        found->second.release()->deleteLater(); // it may be the caller
        watches_.erase(found);
    }
}

void BusConnection::toggleWatch(DBusWatch* watch) {
    const auto found = watches_.find(watch);
    if (found != watches_.end()) {
        found->second->setEnabled(dbus_watch_get_enabled(watch) != 0);
    }
}

void BusConnection::call(BusMessage message, std::weak_ptr<void> owner, ReplyHandler handler, Delivery delivery) {
    Pending pending{std::move(owner), std::move(handler), delivery};
    std::uint32_t serial = 0;
    if (lost_ || dbus_connection_send(connection_.get(), message.get(), &serial) == 0) {
        unsent_.push_back(std::move(pending));
    } else {
        pending_.insert_or_assign(serial, std::move(pending));
    }
    drain_.start(0);
}

void BusConnection::send(BusMessage message) {
    if (lost_) {
        return;
    }
    dbus_message_set_no_reply(message.get(), 1);
    dbus_connection_send(connection_.get(), message.get(), nullptr);
    drain_.start(0);
}

void BusConnection::addMatch(const std::string& rule) {
    auto message = methodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "AddMatch");
    appendText(*message, rule);
    send(std::move(message));
}

void BusConnection::removeMatch(const std::string& rule) {
    auto message = methodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "RemoveMatch");
    appendText(*message, rule);
    send(std::move(message));
}

void BusConnection::dispatchArrivedSignals() {
    readAndWrite(0);
    takeArrived();
    deliverNow([this](DBusMessage& message) {
        return dbus_message_get_type(&message) == DBUS_MESSAGE_TYPE_SIGNAL || isForWait(message);
    });
    if (!arrived_.empty()) {
        drain_.start(0);
    }
}

void BusConnection::wait(const std::function<bool()>& condition, Clock::time_point deadline) {
    const auto marked = [this](DBusMessage& message) { return isForWait(message); };
    deliverNow(marked);
    while (!lost_ && !condition()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0 || dbus_connection_get_is_connected(connection_.get()) == 0) {
            break;
        }
        readAndWrite(static_cast<int>(left));
        takeArrived();
        deliverNow(marked);
    }
    drain_.start(0); // for arrived messages that wait for the event loop
}

void BusConnection::process() {
    readAndWrite(0);
    takeArrived();
    while (!arrived_.empty()) {
        const auto message = std::move(arrived_.front());
        arrived_.pop_front();
        deliver(*message);
    }
    if (!lost_ && dbus_connection_get_is_connected(connection_.get()) == 0) {
        lose();
    }
    while (!unsent_.empty()) {
        const auto pending = std::move(unsent_.front());
        unsent_.pop_front();
        if (!pending.owner.expired()) {
            pending.handler(nullptr);
        }
    }
}

void BusConnection::readAndWrite(int milliseconds) {
    if (!lost_) {
        dbus_connection_read_write(connection_.get(), milliseconds);
    }
}

void BusConnection::takeArrived() {
    while (auto* message = lost_ ? nullptr : dbus_connection_pop_message(connection_.get())) {
        arrived_.emplace_back(message);
    }
}

bool BusConnection::isForWait(DBusMessage& message) const {
    const auto found = pending_.find(dbus_message_get_reply_serial(&message));
    return found != pending_.end() && found->second.delivery == Delivery::alsoInWait;
}

void BusConnection::deliverNow(const std::function<bool(DBusMessage&)>& which) {
    std::deque<BusMessage> later;
    for (auto messages = std::exchange(arrived_, {}); !messages.empty(); messages.pop_front()) {
        if (which(*messages.front())) {
            deliver(*messages.front());
        } else {
            later.push_back(std::move(messages.front()));
        }
    }
    arrived_.insert(arrived_.begin(), std::make_move_iterator(later.begin()), std::make_move_iterator(later.end()));
}

void BusConnection::deliver(DBusMessage& message) {
    switch (dbus_message_get_type(&message)) {
    case DBUS_MESSAGE_TYPE_METHOD_RETURN:
        answer(dbus_message_get_reply_serial(&message), &message);
        break;
    case DBUS_MESSAGE_TYPE_ERROR:
        answer(dbus_message_get_reply_serial(&message), nullptr);
        break;
    case DBUS_MESSAGE_TYPE_SIGNAL:
        signals_.notify(message);
        break;
    case DBUS_MESSAGE_TYPE_METHOD_CALL:
        if (dbus_message_get_no_reply(&message) == 0) {
            BusMessage refusal(dbus_message_new_error(&message, DBUS_ERROR_UNKNOWN_METHOD, "No such method"));
            if (refusal) {
                send(std::move(refusal));
            }
        }
        break;
    default:
        break;
    }
}

void BusConnection::answer(std::uint32_t serial, DBusMessage* reply) {
    const auto found = pending_.find(serial);
    if (found == pending_.end()) {
        return;
    }
    const auto pending = std::move(found->second);
    pending_.erase(found);
    if (!pending.owner.expired()) {
        pending.handler(reply);
    }
}

void BusConnection::lose() {
    lost_ = true;
    for (auto pending = std::exchange(pending_, {}); !pending.empty(); pending.erase(pending.begin())) {
        if (!pending.begin()->second.owner.expired()) {
            pending.begin()->second.handler(nullptr);
        }
    }
    losses_.notify();
}

std::string sessionBusAddress() {
    if (auto address = environment("DBUS_SESSION_BUS_ADDRESS"); !address.empty()) {
        return address;
    }
    const auto folder = environment("XDG_RUNTIME_DIR");
    std::error_code failure;
    if (folder.empty() || !std::filesystem::exists(folder + "/bus", failure)) {
        return {};
    }
    return "unix:path=" + folder + "/bus";
}

std::string systemBusAddress() {
    auto address = environment("DBUS_SYSTEM_BUS_ADDRESS");
    return address.empty() ? "unix:path=/run/dbus/system_bus_socket" : address;
}

} // namespace quillane
