// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/power/SleepAssertionClient.hpp"
#include "core/support/FileDescriptor.hpp"
#include "platform/linux/BusConnection.hpp"

#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace quillane {

class SessionBus;
class X11Blanking;

/// Idle sleep as Linux desktops let it be prevented.
///
/// The system: an inhibitor of the login manager (`Inhibit` of org.freedesktop.login1.Manager), which
/// `systemd-inhibit --list` shows. The display: the session's own service, which is the first of
/// org.gnome.SessionManager, org.freedesktop.ScreenSaver and the X server's blanking that there is. All of them let go
/// by themselves when the program ends.
class LinuxSleepAssertions final : public core::SleepAssertionClient {
public:
    /// `blanking` is absent where there is no X server. Connects to the system bus when it is needed.
    LinuxSleepAssertions(SessionBus& session, std::unique_ptr<X11Blanking> blanking);
    ~LinuxSleepAssertions() override;

    [[nodiscard]] std::variant<core::SleepAssertionID, core::SleepAssertionError>
    create(core::SleepAssertionKind kind) override;
    void release(core::SleepAssertionID assertion) override;

private:
    struct Service;
    using Release = std::function<void()>;

    /// How to let go of what is held now; none when it cannot be had.
    [[nodiscard]] Release inhibitSystem();
    [[nodiscard]] Release inhibitDisplay();
    [[nodiscard]] Release inhibitThrough(const Service& service);

    SessionBus& session_;
    std::unique_ptr<X11Blanking> blanking_;
    std::unique_ptr<BusConnection> system_;
    core::SleepAssertionID last_ = 0;
    std::map<core::SleepAssertionID, Release> held_;
};

} // namespace quillane
