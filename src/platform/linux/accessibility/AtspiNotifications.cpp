// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/accessibility/AtspiNotifications.hpp"

#include "platform/linux/accessibility/AccessibilityBus.hpp"

#include <QTimer>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr auto registry = "org.a11y.atspi.Registry";
constexpr auto registryPath = "/org/a11y/atspi/registry";
constexpr auto objectEvents = "org.a11y.atspi.Event.Object";
constexpr auto event = "object:state-changed:showing";
constexpr auto matchRule = "type='signal',interface='org.a11y.atspi.Event.Object',member='StateChanged',arg0='showing'";
constexpr auto replyTimeout = 20ms;

} // namespace

AtspiNotifications::AtspiNotifications(AccessibilityBus& bus) : bus_(bus) {
    losses_ = bus.onLost([this] { signals_.cancel(); });
}

std::optional<core::Subscription> AtspiNotifications::observe(const std::string& application, std::string_view name,
                                                              Handler handler) {
    return name == "AXMenuOpened" ? add({application, std::move(handler), Delivery::fromEventLoop}) : std::nullopt;
}

std::optional<core::Subscription> AtspiNotifications::note(const std::string& application, Handler handler) {
    return add({application, std::move(handler), Delivery::atOnce});
}

std::optional<core::Subscription> AtspiNotifications::add(Observation observation) {
    auto* bus = bus_.connection();
    if (bus == nullptr) {
        return std::nullopt;
    }
    const bool isFirst = observations_.empty();
    const auto id = next_++;
    observations_.emplace(id, std::move(observation));
    if (isFirst) {
        begin(*bus);
    }
    return core::Subscription([this, alive = lifetime_.watch(), id] {
        if (alive) {
            drop(id);
        }
    });
}

void AtspiNotifications::begin(BusConnection& bus) {
    signals_ = bus.onSignal([this](DBusMessage& signal) { handle(signal); });
    bus.addMatch(matchRule);
    auto message = methodCall(registry, registryPath, registry, "RegisterEvent");
    appendText(*message, event);
    appendTexts(*message, {});                           // properties to be sent along
    appendText(*message, "");                            // of every application
    const auto answered = std::make_shared<bool>(false); // shared with an answer that may come too late
    bus.call(
        std::move(message), answered, [weak = std::weak_ptr(answered)](DBusMessage*) { *weak.lock() = true; },
        BusConnection::Delivery::alsoInWait);
    bus.wait([&] { return *answered; }, BusConnection::Clock::now() + replyTimeout);
}

void AtspiNotifications::drop(std::uint64_t id) {
    observations_.erase(id);
    if (observations_.empty()) {
        end();
    }
}

void AtspiNotifications::end() {
    signals_.cancel();
    if (auto* bus = bus_.connection()) {
        bus->removeMatch(matchRule);
        auto message = methodCall(registry, registryPath, registry, "DeregisterEvent");
        appendText(*message, event);
        bus->send(std::move(message));
    }
}

void AtspiNotifications::handle(DBusMessage& signal) {
    if (dbus_message_is_signal(&signal, objectEvents, "StateChanged") == 0) {
        return;
    }
    BusReader reader(signal);
    const auto state = reader.text();
    const auto gained = reader.int32();
    const char* sender = dbus_message_get_sender(&signal);
    const char* path = dbus_message_get_path(&signal);
    if (state != "showing" || gained != 1 || sender == nullptr || path == nullptr) {
        return;
    }
    for (const auto& [id, observation] : observations_) {
        if (observation.application == sender && observation.delivery == Delivery::atOnce) {
            observation.handler({sender, path});
        } else if (observation.application == sender) {
            // This may run while a call waits for its answer, so the handler is left to the event loop.
            QTimer::singleShot(0, &eventLoop_,
                               [this, id = id, object = AtspiObject{sender, path}] { deliver(id, object); });
        }
    }
}

void AtspiNotifications::deliver(std::uint64_t id, const AtspiObject& object) {
    const auto found = observations_.find(id);
    if (found != observations_.end()) {
        const auto handler = found->second.handler; // it may end the observation
        handler(object);
    }
}

} // namespace quillane
