// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/LinuxSleepAssertions.hpp"

#include "platform/linux/BusQuestion.hpp"
#include "platform/linux/SessionBus.hpp"
#include "platform/linux/X11Blanking.hpp"

#include <array>
#include <cerrno>
#include <utility>

namespace quillane {

namespace {

constexpr auto reason = "Quillane Keep Awake";
constexpr auto program = "com.quillane.app";
constexpr std::chrono::milliseconds patience{300};

constexpr auto loginManager = "org.freedesktop.login1";
constexpr auto loginManagerPath = "/org/freedesktop/login1";
constexpr auto loginManagerInterface = "org.freedesktop.login1.Manager";

/// Of GNOME's session manager: no window belongs to the inhibitor, and the session must not be marked as idle.
constexpr std::uint32_t noWindow = 0;
constexpr std::uint32_t inhibitIdle = 8;

void appendNumber(DBusMessage& message, std::uint32_t number) {
    dbus_message_append_args(&message, DBUS_TYPE_UINT32, &number, DBUS_TYPE_INVALID);
}

core::FileDescriptor descriptor(DBusMessage& reply) {
    int fd = -1;
    if (dbus_message_get_args(&reply, nullptr, DBUS_TYPE_UNIX_FD, &fd, DBUS_TYPE_INVALID) == 0) {
        return {};
    }
    return core::FileDescriptor(fd);
}

} // namespace

/// A service of the session that hands out a cookie for each inhibitor.
struct LinuxSleepAssertions::Service {
    const char* name;
    const char* path;
    const char* release;
    bool wantsWindowAndFlags;
};

namespace {

constexpr auto sessionManager = "org.gnome.SessionManager";
constexpr auto screenSaver = "org.freedesktop.ScreenSaver";

} // namespace

LinuxSleepAssertions::LinuxSleepAssertions(SessionBus& session, std::unique_ptr<X11Blanking> blanking)
    : session_(session), blanking_(std::move(blanking)) {}

LinuxSleepAssertions::~LinuxSleepAssertions() = default;

std::variant<core::SleepAssertionID, core::SleepAssertionError>
LinuxSleepAssertions::create(core::SleepAssertionKind kind) {
    auto release = kind == core::SleepAssertionKind::system ? inhibitSystem() : inhibitDisplay();
    if (!release) {
        return core::SleepAssertionError{ENOTSUP};
    }
    held_.emplace(++last_, std::move(release));
    return last_;
}

void LinuxSleepAssertions::release(core::SleepAssertionID assertion) {
    if (auto found = held_.extract(assertion)) {
        found.mapped()();
    }
}

LinuxSleepAssertions::Release LinuxSleepAssertions::inhibitSystem() {
    if (!system_ || system_->isLost()) {
        system_ = BusConnection::open(systemBusAddress());
    }
    auto question = methodCall(loginManager, loginManagerPath, loginManagerInterface, "Inhibit");
    for (const auto* argument : {"idle", "Quillane", reason, "block"}) {
        appendText(*question, argument);
    }
    const auto reply = askBus(system_.get(), std::move(question), patience); // a late descriptor closes with its reply
    auto held = reply ? descriptor(*reply) : core::FileDescriptor();
    if (!held) {
        return {};
    }
    // std::function asks for something that can be copied.
    return [kept = std::make_shared<core::FileDescriptor>(std::move(held))] { *kept = core::FileDescriptor(); };
}

LinuxSleepAssertions::Release LinuxSleepAssertions::inhibitDisplay() {
    constexpr std::array services{
        Service{sessionManager, "/org/gnome/SessionManager", "Uninhibit", true},
        Service{screenSaver, "/org/freedesktop/ScreenSaver", "UnInhibit", false},
        Service{screenSaver, "/ScreenSaver", "UnInhibit", false}, // the path that older desktops have
    };
    for (const auto& service : services) {
        if (auto release = inhibitThrough(service)) {
            return release;
        }
    }
    if (blanking_ && blanking_->suspend()) {
        return [this] { blanking_->resume(); };
    }
    return {};
}

LinuxSleepAssertions::Release LinuxSleepAssertions::inhibitThrough(const Service& service) {
    auto question = methodCall(service.name, service.path, service.name, "Inhibit");
    appendText(*question, program);
    if (service.wantsWindowAndFlags) {
        appendNumber(*question, noWindow);
    }
    appendText(*question, reason);
    if (service.wantsWindowAndFlags) {
        appendNumber(*question, inhibitIdle);
    }
    const auto giveBack = [&session = session_, service](std::uint32_t cookie) {
        if (auto* bus = session.connection()) {
            auto message = methodCall(service.name, service.path, service.name, service.release);
            appendNumber(*message, cookie);
            dbus_message_set_auto_start(message.get(), 0);
            bus->send(std::move(message));
        }
    };
    const auto late = [giveBack](DBusMessage& reply) {
        if (const auto cookie = BusReader(reply).uint32()) {
            giveBack(*cookie);
        }
    };
    const auto reply = askBus(session_.connection(), std::move(question), patience, late);
    const auto cookie = reply ? BusReader(*reply).uint32() : std::nullopt;
    return cookie ? Release([giveBack, taken = *cookie] { giveBack(taken); }) : Release();
}

} // namespace quillane
