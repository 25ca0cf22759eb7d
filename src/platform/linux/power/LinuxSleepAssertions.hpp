// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/power/SleepAssertionClient.hpp"
#include "core/support/FileDescriptor.hpp"
#include "platform/linux/dbus/BusConnection.hpp"

#include <QObject>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace quillane {

class SessionBus;
class X11Blanking;

/// Prevention of idle sleep on Linux desktops.
///
/// The system: an inhibitor of the login manager (`Inhibit` of org.freedesktop.login1.Manager), which `systemd-inhibit
/// --list` shows. The display: the first available of org.gnome.SessionManager, org.freedesktop.ScreenSaver and the X
/// server's blanking. All of them release by themselves when the program ends. When a service that holds an inhibitor
/// ends, or its bus does, the loss is reported soon after it is back, or when it has not come back in time.
class LinuxSleepAssertions final : public core::SleepAssertionClient {
public:
    /// When a loss is reported.
    struct Delays {
        std::chrono::milliseconds afterReturn = std::chrono::seconds(1); ///< for a service that is starting
        std::chrono::milliseconds withoutReturn = std::chrono::seconds(5);
    };

    /// `blanking` is absent without an X server. Connects to the system bus on demand.
    LinuxSleepAssertions(SessionBus& session, std::unique_ptr<X11Blanking> blanking, Delays delays);
    LinuxSleepAssertions(SessionBus& session, std::unique_ptr<X11Blanking> blanking);
    ~LinuxSleepAssertions() override;

    [[nodiscard]] std::variant<core::SleepAssertionID, core::SleepAssertionError>
    create(core::SleepAssertionKind kind) override;
    void release(core::SleepAssertionID assertion) override;

    core::Subscription
    onLost(std::function<void(core::SleepAssertionID, core::SleepAssertionError)> callback) override {
        return losses_.subscribe(std::move(callback));
    }

private:
    struct Service;

    /// What is currently held.
    struct Inhibitor {
        std::function<void()> release; ///< none when it is not available
        std::string holder;            ///< the service's name; empty for the X server
        std::uint64_t changes = 0;     ///< of its owner since
    };

    /// The services of one bus that are followed.
    struct Followed {
        std::set<std::string> services;
        core::Subscription changes; ///< of the owners of names
        core::Subscription loss;
    };

    [[nodiscard]] Inhibitor inhibitSystem();
    [[nodiscard]] Inhibitor inhibitDisplay();
    [[nodiscard]] Inhibitor inhibitThrough(const Service& service);
    void follow(Followed& followed, BusConnection& bus, const std::string& service);
    void noteOwner(DBusMessage& signal);
    void noteChange(const std::string& service, std::chrono::milliseconds delay);

    SessionBus& session_;
    std::unique_ptr<X11Blanking> blanking_;
    Delays delays_;
    std::unique_ptr<BusConnection> system_;
    core::SleepAssertionID last_ = 0;
    std::map<core::SleepAssertionID, Inhibitor> held_;
    core::Listeners<core::SleepAssertionID, core::SleepAssertionError> losses_;
    QObject eventLoop_; ///< pending calls of the event loop end with it
    Followed onSystem_;
    Followed onSession_;
    core::Subscription reopenings_;
};

} // namespace quillane
