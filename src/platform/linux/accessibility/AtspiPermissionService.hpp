// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Lifetime.hpp"
#include "core/support/Subscription.hpp"
#include "platform/PermissionService.hpp"

#include <memory>

namespace quillane {

class BusConnection;
class SessionBus;

/// The permissions as an X11 session has them. Accessibility is granted while the session's accessibility is switched
/// on (`IsEnabled` of org.a11y.Status), which a request does; signals keep the state up to date. Any program may
/// observe the keyboard.
///
/// The constructor requests the state. A query before the first answer waits for it, once and at most a second, so that
/// a grant does not look missing while the machine is busy starting a session. A later answer counts from then on.
class AtspiPermissionService final : public PermissionService {
public:
    explicit AtspiPermissionService(SessionBus& session);

    [[nodiscard]] bool isGranted(core::MacPermission permission) const override;
    void request(core::MacPermission permission) override;

    /// The accessibility page of the running desktop (XDG_CURRENT_DESKTOP), if its program is installed; there is none
    /// for Input Monitoring.
    [[nodiscard]] bool hasSettings(core::MacPermission permission) const override;
    bool openSettings(core::MacPermission permission) override;

    [[nodiscard]] bool isGrantedInSettings() const override { return false; }

private:
    void watch(BusConnection& session);
    void read(BusConnection& session);

    SessionBus& session_;
    mutable bool answered_ = false; ///< the first answer has arrived, or the wait for it has ended
    bool enabled_ = false;
    core::Lifetime lifetime_;
    core::Subscription reopenings_;
    core::Subscription signals_;
    core::Subscription loss_;
};

} // namespace quillane
