// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/power/LinuxSleepAssertions.hpp"

#include "platform/linux/dbus/BusQuestion.hpp"
#include "platform/linux/dbus/SessionBus.hpp"
#include "platform/linux/power/X11Blanking.hpp"

#include <QTimer>

#include <array>
#include <cerrno>
#include <utility>

namespace quillane {

namespace {

constexpr auto reason = "Quillane Keep Awake";
constexpr auto program = "com.quillane.app";
constexpr std::chrono::milliseconds replyTimeout{300};

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

LinuxSleepAssertions::LinuxSleepAssertions(SessionBus& session, std::unique_ptr<X11Blanking> blanking, Delays delays)
    : session_(session),
      blanking_(std::move(blanking)),
      delays_(delays),
      reopenings_(session.onOpened([this](BusConnection&) { onSession_ = {}; })) {}

LinuxSleepAssertions::LinuxSleepAssertions(SessionBus& session, std::unique_ptr<X11Blanking> blanking)
    : LinuxSleepAssertions(session, std::move(blanking), Delays()) {}

LinuxSleepAssertions::~LinuxSleepAssertions() = default;

std::variant<core::SleepAssertionID, core::SleepAssertionError>
LinuxSleepAssertions::create(core::SleepAssertionKind kind) {
    auto inhibitor = kind == core::SleepAssertionKind::system ? inhibitSystem() : inhibitDisplay();
    if (!inhibitor.release) {
        return core::SleepAssertionError{ENOTSUP};
    }
    held_.emplace(++last_, std::move(inhibitor));
    return last_;
}

void LinuxSleepAssertions::release(core::SleepAssertionID assertion) {
    if (auto found = held_.extract(assertion)) {
        found.mapped().release();
    }
}

LinuxSleepAssertions::Inhibitor LinuxSleepAssertions::inhibitSystem() {
    if (!system_ || system_->isLost()) {
        onSystem_ = {};
        system_ = BusConnection::open(systemBusAddress());
    }
    if (!system_) {
        return {};
    }
    follow(onSystem_, *system_, loginManager);
    auto question = methodCall(loginManager, loginManagerPath, loginManagerInterface, "Inhibit");
    for (const auto* argument : {"idle", "Quillane", reason, "block"}) {
        appendText(*question, argument);
    }
    const auto reply =
        askBus(system_.get(), std::move(question), replyTimeout); // a late descriptor closes with its reply
    auto held = reply ? descriptor(*reply) : core::FileDescriptor();
    if (!held) {
        return {};
    }
    // std::function needs a copyable type.
    return {[kept = std::make_shared<core::FileDescriptor>(std::move(held))] { *kept = core::FileDescriptor(); },
            loginManager};
}

LinuxSleepAssertions::Inhibitor LinuxSleepAssertions::inhibitDisplay() {
    constexpr std::array services{
        Service{sessionManager, "/org/gnome/SessionManager", "Uninhibit", true},
        Service{screenSaver, "/org/freedesktop/ScreenSaver", "UnInhibit", false},
        Service{screenSaver, "/ScreenSaver", "UnInhibit", false}, // the path on older desktops
    };
    for (const auto& service : services) {
        if (auto inhibitor = inhibitThrough(service); inhibitor.release) {
            return inhibitor;
        }
    }
    if (blanking_ && blanking_->suspend()) {
        return {[this] { blanking_->resume(); }, {}};
    }
    return {};
}

LinuxSleepAssertions::Inhibitor LinuxSleepAssertions::inhibitThrough(const Service& service) {
    auto* bus = session_.connection();
    if (bus == nullptr) {
        return {};
    }
    follow(onSession_, *bus, service.name);
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
        if (auto* connection = session.connection()) {
            auto message = methodCall(service.name, service.path, service.name, service.release);
            appendNumber(*message, cookie);
            dbus_message_set_auto_start(message.get(), 0);
            connection->send(std::move(message));
        }
    };
    const auto late = [giveBack](DBusMessage& reply) {
        if (const auto cookie = BusReader(reply).uint32()) {
            giveBack(*cookie);
        }
    };
    const auto reply = askBus(bus, std::move(question), replyTimeout, late);
    const auto cookie = reply ? BusReader(*reply).uint32() : std::nullopt;
    return cookie ? Inhibitor{[giveBack, taken = *cookie] { giveBack(taken); }, service.name} : Inhibitor();
}

// Losses

void LinuxSleepAssertions::follow(Followed& followed, BusConnection& bus, const std::string& service) {
    if (followed.services.empty()) {
        followed.changes = bus.onSignal([this](DBusMessage& signal) { noteOwner(signal); });
        followed.loss = bus.onLost([this, &followed] {
            for (const auto& lost : followed.services) {
                noteChange(lost, delays_.withoutReturn);
            }
        });
    }
    if (followed.services.insert(service).second) {
        bus.addMatch("type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
                     "member='NameOwnerChanged',arg0='" +
                     service + "'");
    }
}

void LinuxSleepAssertions::noteOwner(DBusMessage& signal) {
    if (dbus_message_is_signal(&signal, DBUS_INTERFACE_DBUS, "NameOwnerChanged") == 0) {
        return;
    }
    BusReader reader(signal);
    const auto service = reader.text();
    reader.skip();
    const auto owner = reader.text();
    if (service && owner) {
        noteChange(std::string(*service), owner->empty() ? delays_.withoutReturn : delays_.afterReturn);
    }
}

/// The service's inhibitors are gone. Another change restarts the delay.
void LinuxSleepAssertions::noteChange(const std::string& service, std::chrono::milliseconds delay) {
    for (auto& [assertion, inhibitor] : held_) {
        if (inhibitor.holder == service) {
            QTimer::singleShot(delay, &eventLoop_, [this, lost = assertion, change = ++inhibitor.changes] {
                const auto found = held_.find(lost);
                if (found != held_.end() && found->second.changes == change) {
                    held_.erase(found);
                    losses_.notify(lost, {EOWNERDEAD});
                }
            });
        }
    }
}

} // namespace quillane
