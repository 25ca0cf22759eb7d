// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/accessibility/AtspiFocus.hpp"

#include "platform/linux/accessibility/AccessibilityBus.hpp"

#include <algorithm>

#include <unistd.h>

namespace quillane {

namespace {

constexpr auto registry = "org.a11y.atspi.Registry";
constexpr auto objectEvents = "org.a11y.atspi.Event.Object";
constexpr std::chrono::milliseconds heldKeyboard{200}; // the tap holds a key for a few milliseconds
constexpr std::chrono::seconds minimumInterval{1};
constexpr std::chrono::seconds maximumInterval{32};

/// Announces a listener to applications, through the registry: most send no events otherwise.
void registerForFocusEvents(BusConnection& bus) {
    auto message = methodCall(registry, "/org/a11y/atspi/registry", registry, "RegisterEvent");
    appendText(*message, "object:state-changed:focused");
    appendTexts(*message, {}); // properties to be sent along
    appendText(*message, "");  // of every application
    bus.send(std::move(message));
}

bool isUniqueName(std::string_view name) {
    return name.starts_with(':');
}

} // namespace

AtspiFocus::AtspiFocus(AccessibilityBus& bus) : bus_(bus) {
    openings_ = bus.onOpened([this](BusConnection& opened) { watch(opened); });
    losses_ = bus.onLost([this] { programs_.clear(); });
    if (auto* connection = bus.connection()) {
        watch(*connection);
    }
}

std::optional<std::string> AtspiFocus::applicationOf(pid_t pid) const {
    // A process may have several connections: the one that has announced a focus is the application's.
    const std::pair<const std::string, Program>* best = nullptr;
    for (const auto& entry : programs_) {
        if (entry.second.pid == pid && (best == nullptr || entry.second.change > best->second.change)) {
            best = &entry;
        }
    }
    return best != nullptr ? std::optional(best->first) : std::nullopt;
}

std::optional<pid_t> AtspiFocus::processOf(const std::string& application) const {
    const auto found = programs_.find(application);
    return found != programs_.end() ? found->second.pid : std::nullopt;
}

std::optional<AtspiFocus::Focus> AtspiFocus::in(const std::string& application) const {
    const auto found = programs_.find(application);
    if (found == programs_.end()) {
        return std::nullopt;
    }
    takeResult(found->second);
    const auto& program = found->second;
    return program.focused ? std::optional(Focus{*program.focused, program.change}) : std::nullopt;
}

bool AtspiFocus::confirm(const AtspiObject& object, bool hasState, BusConnection::Clock::time_point asked) {
    const auto found = programs_.find(object.bus);
    if (found == programs_.end() || found->second.focused != object) {
        return false;
    }
    auto& program = found->second;
    if (hasState) {
        program.lostSince.reset();
    } else if (!program.lostSince && program.announced < asked) {
        program.lostSince = asked;
    }
    if (isGone(program)) {
        program.focused.reset();
    }
    return program.focused.has_value();
}

bool AtspiFocus::holds(const AtspiObject& object) const {
    const auto found = programs_.find(object.bus);
    return found != programs_.end() && found->second.focused == object && !found->second.lostSince;
}

bool AtspiFocus::isGone(const Program& program) {
    return program.lostSince && BusConnection::Clock::now() - *program.lostSince > heldKeyboard;
}

void AtspiFocus::restore(const AtspiObject& object) {
    const auto found = programs_.find(object.bus);
    if (found != programs_.end()) {
        found->second.focused = object;
        found->second.announced = BusConnection::Clock::now();
        found->second.lostSince.reset();
        found->second.change = ++changes_;
    }
}

void AtspiFocus::forget(const AtspiObject& object) {
    for (auto& [application, program] : programs_) {
        if (program.focused == object) {
            program.focused.reset();
        }
    }
}

const AtspiFocusSearch* AtspiFocus::search(const std::string& application) {
    const auto found = programs_.find(application);
    auto* bus = bus_.connection();
    if (found == programs_.end() || bus == nullptr) {
        return nullptr;
    }
    auto& program = found->second;
    if (program.search && BusConnection::Clock::now() - program.search->begin() >= program.interval) {
        program.search.reset();
        program.interval = std::min(program.interval * 2, maximumInterval);
    }
    if (!program.search) {
        program.search = std::make_unique<AtspiFocusSearch>(*bus, application);
    }
    return program.search->isRunning() ? program.search.get() : nullptr;
}

void AtspiFocus::searchAgain(const std::string& application) {
    const auto found = programs_.find(application);
    if (found != programs_.end() && !found->second.focused) {
        found->second.search.reset();
        found->second.interval = minimumInterval;
    }
}

void AtspiFocus::takeResult(Program& program) {
    if (!program.focused && program.search && !program.search->isRunning() && program.search->result()) {
        program.focused = program.search->result();
        program.announced = BusConnection::Clock::now();
        program.lostSince.reset();
        program.search.reset();
        program.interval = minimumInterval;
    }
}

void AtspiFocus::watch(BusConnection& bus) {
    programs_.clear();
    signals_ = bus.onSignal([this, &bus](DBusMessage& signal) { handle(bus, signal); });
    bus.addMatch("type='signal',interface='" + std::string(objectEvents) + "',member='StateChanged',arg0='focused'");
    bus.addMatch("type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
                 "member='NameOwnerChanged'");
    registerForFocusEvents(bus);
    bus.call(methodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "ListNames"), lifetime_,
             [this, &bus](DBusMessage* reply) {
                 auto names = reply != nullptr ? BusReader(*reply).container() : std::nullopt;
                 while (const auto name = names ? names->text() : std::nullopt) {
                     if (isUniqueName(*name)) {
                         learn(bus, std::string(*name), true);
                     }
                 }
             });
}

void AtspiFocus::learn(BusConnection& bus, const std::string& application, bool searches) {
    programs_.try_emplace(application);
    auto question = methodCall(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "GetConnectionUnixProcessID");
    appendText(*question, application);
    bus.call(
        std::move(question), lifetime_,
        [this, &bus, application, searches](DBusMessage* reply) {
            const auto found = programs_.find(application);
            const auto pid = reply != nullptr ? BusReader(*reply).uint32() : std::nullopt;
            if (found == programs_.end() || !pid) {
                return;
            }
            found->second.pid = static_cast<pid_t>(*pid);
            const bool isOther = found->second.pid != getpid(); // this process cannot answer while it waits
            if (searches && isOther && !found->second.focused && !found->second.search) {
                found->second.search = std::make_unique<AtspiFocusSearch>(bus, application);
            }
        },
        BusConnection::Delivery::alsoInWait);
}

void AtspiFocus::handle(BusConnection& bus, DBusMessage& signal) {
    if (dbus_message_is_signal(&signal, objectEvents, "StateChanged") != 0) {
        noteFocus(bus, signal);
    } else if (dbus_message_is_signal(&signal, DBUS_INTERFACE_DBUS, "NameOwnerChanged") != 0) {
        noteOwner(bus, signal);
    }
}

void AtspiFocus::noteOwner(BusConnection& bus, DBusMessage& signal) {
    BusReader reader(signal);
    const auto name = reader.text();
    const auto before = reader.text();
    const auto owner = reader.text();
    if (!name || !before || !owner) {
        return;
    }
    if (isUniqueName(*name)) {
        if (owner->empty()) {
            programs_.erase(std::string(*name));
        } else {
            learn(bus, std::string(*name), false);
        }
    } else if (*name == registry && !owner->empty() && !before->empty()) {
        registerForFocusEvents(bus);
    }
}

void AtspiFocus::noteFocus(BusConnection& bus, DBusMessage& signal) {
    BusReader reader(signal);
    const auto state = reader.text();
    const auto gained = reader.int32();
    const char* sender = dbus_message_get_sender(&signal);
    const char* path = dbus_message_get_path(&signal);
    if (state != "focused" || !gained || sender == nullptr || path == nullptr) {
        return;
    }
    const std::string application(sender);
    if (!programs_.contains(application)) {
        learn(bus, application, false);
    }
    auto& program = programs_[application];
    program.search.reset();
    program.interval = minimumInterval;
    const AtspiObject object{application, path};
    const bool isSame = program.focused == object;
    if (*gained != 0) {
        const bool isMove = !isSame || isGone(program);
        program.focused = object;
        program.announced = BusConnection::Clock::now();
        program.lostSince.reset();
        if (isMove) {
            program.change = ++changes_;
            moves_.notify(bus, Focus{object, program.change});
        }
    } else if (isSame && !program.lostSince) {
        program.lostSince = BusConnection::Clock::now();
    }
}

} // namespace quillane
