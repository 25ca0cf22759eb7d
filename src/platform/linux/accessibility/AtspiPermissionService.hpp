// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Subscription.hpp"
#include "platform/PermissionService.hpp"

#include <memory>

namespace quillane {

class BusConnection;
class SessionBus;

/// The permissions as an X11 session has them. Accessibility is granted while the session's accessibility is switched
/// on (`IsEnabled` of org.a11y.Status), which a request does; the state is kept up to date by notices, not by asking.
/// Any program may observe the keyboard.
///
/// The first answer is on its way since the object was made; being asked before it is there waits for it, once and for
/// a second at most: a machine that is busy with a session's start must not make a grant look as if it were missing.
/// One that comes later counts from then on.
class AtspiPermissionService final : public PermissionService {
public:
    explicit AtspiPermissionService(SessionBus& session);

    [[nodiscard]] bool isGranted(core::MacPermission permission) const override;
    void request(core::MacPermission permission) override;

    /// The accessibility page of the desktop that runs (XDG_CURRENT_DESKTOP), while its program is installed; there is
    /// none for Input Monitoring.
    [[nodiscard]] bool hasSettings(core::MacPermission permission) const override;
    bool openSettings(core::MacPermission permission) override;

    [[nodiscard]] bool isGrantedInSettings() const override { return false; }

private:
    void watch(BusConnection& session);
    void read(BusConnection& session);

    SessionBus& session_;
    mutable bool answered_ = false; ///< the first answer has come, or was waited for long enough
    bool enabled_ = false;
    std::shared_ptr<void> alive_ = std::make_shared<int>(); // shared with answers that are on their way
    core::Subscription reopenings_;
    core::Subscription signals_;
    core::Subscription loss_;
};

} // namespace quillane
