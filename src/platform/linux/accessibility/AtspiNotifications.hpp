// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "core/support/Subscription.hpp"
#include "platform/linux/accessibility/AtspiFacts.hpp"

#include <QObject>

#include <functional>
#include <map>

namespace quillane {

class AccessibilityBus;

/// The notifications that can be observed: "AXMenuOpened", an object that becomes visible. Applications are asked to
/// announce it only while somebody observes. Main thread only.
class AtspiNotifications {
public:
    using Handler = std::function<void(const AtspiObject&)>;

    explicit AtspiNotifications(AccessibilityBus& bus);

    /// The handler is called from the event loop. Waits until the registry has notified the applications, at most 20
    /// ms. None for an unknown name, or without a bus.
    [[nodiscard]] std::optional<core::Subscription> observe(const std::string& application, std::string_view name,
                                                            Handler handler);

    /// The same for objects that become visible from now on, but the handler is called as soon as a signal arrives,
    /// also while a call waits: it must only record.
    [[nodiscard]] std::optional<core::Subscription> note(const std::string& application, Handler handler);

private:
    enum class Delivery { fromEventLoop, atOnce };

    struct Observation {
        std::string application;
        Handler handler;
        Delivery delivery;
    };

    [[nodiscard]] std::optional<core::Subscription> add(Observation observation);

    void handle(DBusMessage& signal);
    void deliver(std::uint64_t id, const AtspiObject& object);
    void drop(std::uint64_t id);
    void begin(BusConnection& bus);
    void end();

    AccessibilityBus& bus_;
    std::map<std::uint64_t, Observation> observations_;
    std::uint64_t next_ = 0;
    QObject eventLoop_; ///< pending calls of the event loop end with it
    core::Lifetime lifetime_;
    core::Subscription signals_;
    core::Subscription losses_;
};

} // namespace quillane
