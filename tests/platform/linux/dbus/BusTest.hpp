// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/fixture/LiveDesktopTest.hpp"
#include "platform/linux/dbus/BusConnection.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <QCoreApplication>

#include <array>

namespace quillane::testing {

/// A test with an event loop on a desktop of its own, whose program this process is.
class BusTest : public live::LiveDesktopTest {
protected:
    explicit BusTest(live::LiveDesktopOptions options)
        : options_(std::move(options)), application_(argc_, argv_.data()) {}

    void SetUp() override {
        startDesktop(options_);
        desktop().adoptEnvironment();
    }

private:
    live::LiveDesktopOptions options_;
    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    QCoreApplication application_;
};

/// Calls a method of the bus itself and waits for the answer.
inline bool callBus(BusConnection& bus, const char* member, const std::string& argument,
                    const std::function<void(DBusMessage*)>& read = {}) {
    auto message = methodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, member);
    appendText(*message, argument);
    if (std::string_view(member) == "RequestName") {
        const std::uint32_t flags = 0;
        dbus_message_append_args(message.get(), DBUS_TYPE_UINT32, &flags, DBUS_TYPE_INVALID);
    }
    const auto owner = std::make_shared<int>();
    bool answered = false;
    bool ok = false;
    bus.call(std::move(message), owner, [&](DBusMessage* reply) {
        answered = true;
        ok = reply != nullptr;
        if (ok && read) {
            read(reply);
        }
    });
    return waitUntil([&] { return answered; }) && ok;
}

inline bool isOwned(BusConnection& bus, const std::string& name) {
    bool owned = false;
    callBus(bus, "NameHasOwner", name, [&](DBusMessage* reply) { owned = BusReader(*reply).flag() == true; });
    return owned;
}

} // namespace quillane::testing
