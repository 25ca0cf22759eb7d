// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// What AtspiAccessibility does beyond reading the facts of one object.

#include "platform/linux/accessibility/AtspiHandle.hpp"

#include <algorithm>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr auto actionInterface = "org.a11y.atspi.Action";
constexpr auto componentInterface = "org.a11y.atspi.Component";
constexpr auto textInterface = "org.a11y.atspi.Text";
constexpr std::uint32_t onScreen = 0; // AtspiCoordType
constexpr auto registry = "org.a11y.atspi.Registry";
constexpr auto keySource = "/org/a11y/atspi/registry/deviceeventcontroller";
constexpr auto keySourceInterface = "org.a11y.atspi.DeviceEventController";
constexpr std::int32_t escapeSymbol = 0xff1b; // X11/keysymdef.h
constexpr std::uint32_t pressAndRelease = 3;  // AtspiKeySynthType, of a key symbol
constexpr auto afterLevel = 20ms;             // one Escape may close all levels, one after the other
constexpr auto betweenLooks = 2ms;
constexpr auto timeToOpen = 600ms; // of a submenu, whose window is made for it
constexpr int maximumSteps = 32;   // from an object up to its window

bool isOpenMenu(const AtspiFacts& facts) {
    return isMenu(facts) && facts.is(AtspiState::showing);
}

} // namespace

std::optional<AtspiValue> AtspiAccessibility::compositeValue(const Handle& handle, const AtspiObject& object,
                                                             std::string_view name, const Limit& limit) {
    const auto value = [](const std::optional<AtspiObject>& found) {
        return found ? AtspiValue(*found) : AtspiValue();
    };
    if (object.bus.empty()) {
        return std::nullopt;
    }
    if (name == "AXFocusedWindow" && handle.pid != 0) {
        return value(activeWindow(object, limit));
    }
    if (name == "AXWindow" && handle.pid == 0) {
        return value(windowOf(object, limit));
    }
    if (name == "AXChildren" && handle.pid == 0) {
        if (auto children = openedSubmenu(object, limit)) {
            return AtspiValue(std::move(*children));
        }
    }
    return std::nullopt;
}

std::optional<AtspiObject> AtspiAccessibility::windowOf(AtspiObject object, const Limit& limit) {
    for (int step = 0; step < maximumSteps; ++step) {
        const auto found = facts(object, AtspiFactSet{} | AtspiFact::parent, limit);
        if (!found || !found->parent || found->parent->bus != object.bus) {
            return std::nullopt;
        }
        if (found->parent->path == atspiRootPath) {
            return object;
        }
        object = *found->parent;
    }
    return std::nullopt;
}

std::optional<AtspiObject> AtspiAccessibility::activeWindow(const AtspiObject& application, const Limit& limit) {
    const auto root = facts(application, AtspiFactSet{} | AtspiFact::children, limit);
    if (!root) {
        return std::nullopt;
    }
    const std::vector<AtspiFactSet> which(root->children.size(), AtspiFactSet{} | AtspiFact::states);
    const auto windows = factsOfEach(root->children, which, limit);
    const auto active = std::ranges::find_if(
        windows, [](const auto& window) { return window != nullptr && window->is(AtspiState::active); });
    return active != windows.end()
               ? std::optional(root->children.at(static_cast<std::size_t>(active - windows.begin())))
               : std::nullopt;
}

std::vector<std::shared_ptr<AtspiFacts>> AtspiAccessibility::factsOfEach(std::span<const AtspiObject> objects,
                                                                         std::span<const AtspiFactSet> which,
                                                                         const Limit& limit) {
    std::vector<std::shared_ptr<AtspiFacts>> results(objects.size()); // shared with pending answers
    auto* bus = bus_.connection();
    if (bus == nullptr) {
        return results;
    }
    std::vector<Request> requests;
    for (std::size_t index = 0; index < objects.size(); ++index) {
        const auto& object = objects[index];
        if (object.bus.empty()) {
            results[index] = facts(object, which[index], limit);
        } else if (mayAsk(*bus, object.bus, limit)) {
            results[index] = requestFacts(*bus, object, which[index]);
            requests.push_back({object, 0, limit.now, results[index]});
        }
    }
    for (const auto& request : requests) { // they share one deadline
        if (!waitFor(*bus, request, limit)) {
            break;
        }
    }
    for (auto& result : results) {
        if (result && (!result->isComplete() || (result->asked != 0 && result->isRefused()))) {
            result = nullptr;
        }
    }
    return results;
}

std::vector<std::optional<std::vector<AXValue>>>
AtspiAccessibility::attributesOfEach(std::span<const AXElement> elements, std::span<const std::string_view> names) {
    if (elements.empty()) {
        return {};
    }
    AtspiFactSet needs = AtspiFactSet{} | AtspiFact::role; // every object has it, so it shows who does not answer
    for (const auto name : names) {
        const auto* row = findAttribute(name);
        needs |= row != nullptr ? row->needs : 0;
    }
    std::vector<AtspiObject> objects;
    for (const auto& element : elements) {
        objects.push_back(objectOf(dynamic_cast<const Handle&>(element.handle())).value_or(AtspiObject{}));
    }
    const auto limit = limitOf(dynamic_cast<const Handle&>(elements.front().handle()));
    const auto found = factsOfEach(objects, std::vector<AtspiFactSet>(objects.size(), needs), limit);
    std::vector<std::optional<std::vector<AXValue>>> results(elements.size());
    for (std::size_t index = 0; index < found.size(); ++index) {
        if (!found[index]) {
            continue;
        }
        const auto timeout = dynamic_cast<const Handle&>(elements[index].handle()).timeout;
        auto& values = results[index].emplace();
        for (const auto name : names) {
            const auto* row = findAttribute(name);
            values.push_back(row != nullptr ? present(row->value(*found[index]), timeout) : AXValue());
        }
    }
    return results;
}

std::optional<std::vector<AtspiObject>> AtspiAccessibility::openedSubmenu(const AtspiObject& item, Limit limit) {
    const auto deadline = limit.now + std::max<std::chrono::milliseconds>(limit.timeout, timeToOpen);
    std::vector<AtspiObject> shown; // shown since the item was opened: a submenu may be the child of something else
    std::optional<core::Subscription> token;
    while (true) {
        const auto found =
            facts(item, AtspiFact::role | AtspiFact::states | AtspiFact::children | AtspiFact::actions, limit);
        if (!found || !isMenuItem(*found)) {
            return std::nullopt;
        }
        auto candidates = found->children;
        candidates.insert(candidates.end(), shown.begin(), shown.end());
        const std::vector<AtspiFactSet> which(candidates.size(), AtspiFact::role | AtspiFact::states);
        const auto read = factsOfEach(candidates, which, limit);
        const auto first = [&](bool (*is)(const AtspiFacts&)) {
            return std::ranges::find_if(read, [&](const auto& one) { return one != nullptr && is(*one); });
        };
        if (const auto open = first(isOpenMenu); open != read.end()) {
            submenu_ = candidates.at(static_cast<std::size_t>(open - read.begin()));
            return std::vector{*submenu_};
        }
        const bool opens = saysThatItOpens(*found) || first(isMenu) != read.end();
        auto* bus = bus_.connection();
        limit.now = Clock::now(); // for the next look, while the application answers
        if (!opens || bus == nullptr || limit.now >= deadline) {
            return found->children;
        }
        if (!token) {
            token = notifications_.note(item.bus, [&](const AtspiObject& object) { shown.push_back(object); });
            const auto press = atspiActionIndex(*found, "AXPress");
            const auto index = press ? press : atspiActionIndex(*found, "AXShowMenu");
            if (!token || !index || doAction(item, *index, limit) == AXActionResult::failed) {
                return found->children;
            }
        } else {
            bus->wait([] { return false; }, Clock::now() + betweenLooks);
        }
        bus->dispatchArrivedSignals();
    }
}

/// Sends a call and waits. `read` is given the answer, or nullptr for an error; false when none came in time.
bool AtspiAccessibility::ask(BusMessage message, const Limit& limit, std::function<void(DBusMessage* reply)> read) {
    auto* bus = bus_.connection();
    if (bus == nullptr) {
        return false;
    }
    const auto came = std::make_shared<bool>(false); // shared with an answer that may come too late
    dbus_message_set_auto_start(message.get(), 0);
    bus->call(
        std::move(message), came,
        [weak = std::weak_ptr(came), read = std::move(read)](DBusMessage* reply) {
            if (const auto target = weak.lock()) {
                *target = true;
                read(reply);
            }
        },
        BusConnection::Delivery::alsoInWait);
    bus->wait([&] { return *came; }, limit.now + limit.timeout);
    return *came;
}

std::optional<bool> AtspiAccessibility::answer(BusMessage message, const Limit& limit) {
    bool yes = false;
    const bool came = ask(std::move(message), limit, [&](DBusMessage* reply) {
        yes = reply != nullptr && BusReader(*reply).flag().value_or(true);
    });
    return came ? std::optional(yes) : std::nullopt;
}

/// The answer is four numbers, which may stand in a structure.
std::optional<AXRect> AtspiAccessibility::rectangle(BusMessage message, const Limit& limit) {
    std::optional<AXRect> rectangle;
    const bool came = ask(std::move(message), limit, [&](DBusMessage* reply) {
        if (reply == nullptr) {
            return;
        }
        BusReader answer(*reply);
        auto structure = answer.container();
        auto& numbers = structure ? *structure : answer;
        const auto x = numbers.int32();
        const auto y = numbers.int32();
        const auto width = numbers.int32();
        const auto height = numbers.int32();
        if (x && y && width && height && *height > 0 && *width >= 0) {
            rectangle = AXRect{double(*x), double(*y), double(*width), double(*height)};
        }
    });
    return came ? rectangle : std::nullopt;
}

std::optional<AXRect> AtspiAccessibility::frame(const AXElement& element) {
    const auto& handle = dynamic_cast<const Handle&>(element.handle());
    const auto object = objectOf(handle);
    const auto limit = limitOf(handle);
    auto* bus = bus_.connection();
    if (!object || object->bus.empty() || bus == nullptr || !mayAsk(*bus, object->bus, limit)) {
        return std::nullopt;
    }
    auto message = methodCall(object->bus, object->path, componentInterface, "GetExtents");
    appendUint32(*message, onScreen);
    return rectangle(std::move(message), limit);
}

std::optional<AXRect> AtspiAccessibility::frameOfText(const AXElement& element, const AXTextRange& range) {
    const auto& handle = dynamic_cast<const Handle&>(element.handle());
    const auto object = objectOf(handle);
    const auto limit = limitOf(handle);
    auto* bus = bus_.connection();
    if (!object || object->bus.empty() || bus == nullptr || !mayAsk(*bus, object->bus, limit)) {
        return std::nullopt;
    }
    const bool isPosition = range.length == 0;
    auto message =
        methodCall(object->bus, object->path, textInterface, isPosition ? "GetCharacterExtents" : "GetRangeExtents");
    appendInt32(*message, static_cast<std::int32_t>(range.location));
    if (!isPosition) {
        appendInt32(*message, static_cast<std::int32_t>(range.location + range.length));
    }
    appendUint32(*message, onScreen);
    return rectangle(std::move(message), limit);
}

AXActionResult AtspiAccessibility::doAction(const AtspiObject& object, std::size_t index, const Limit& limit) {
    auto message = methodCall(object.bus, object.path, actionInterface, "DoAction");
    appendInt32(*message, static_cast<std::int32_t>(index));
    const auto done = answer(std::move(message), limit);
    if (!done) {
        return AXActionResult::cannotComplete;
    }
    return *done ? AXActionResult::done : AXActionResult::failed;
}

/// The submenu that was opened last, else the menu itself; none when neither is visible or nothing answers.
std::optional<AtspiObject> AtspiAccessibility::innermostOpenMenu(const AtspiObject& menu, const Limit& limit) {
    std::vector<AtspiObject> levels; // the submenu first: a menu that closes with it is read after it
    if (submenu_ && submenu_->bus == menu.bus) {
        levels.push_back(*submenu_);
    }
    levels.push_back(menu);
    const std::vector<AtspiFactSet> which(levels.size(), AtspiFact::role | AtspiFact::states);
    const auto read = factsOfEach(levels, which, limit);
    const auto open = std::ranges::find_if(read, [](const auto& one) { return one != nullptr && isOpenMenu(*one); });
    return open != read.end() ? std::optional(levels.at(static_cast<std::size_t>(open - read.begin()))) : std::nullopt;
}

/// An Escape that arrives after its menu has closed would reach the document. So each level gets one and is waited for;
/// the next level gets its own only while it is still visible.
AXActionResult AtspiAccessibility::dismissMenu(const AtspiObject& menu, const Limit& limit) {
    const auto deadline = limit.now + limit.timeout;
    std::optional<AtspiObject> seen; // the level that was visible at the last look
    bool sent = false;               // its Escape
    bool sentAny = false;
    auto due = Clock::now(); // for its Escape
    while (true) {
        const auto level = innermostOpenMenu(menu, limit);
        const auto now = Clock::now();
        auto* bus = bus_.connection();
        if (!level && now < deadline) {
            return AXActionResult::done;
        }
        if (bus == nullptr || now >= deadline) {
            return sentAny ? AXActionResult::cannotComplete : AXActionResult::failed;
        }
        if (level != seen) {
            due = seen ? now + afterLevel : now;
            seen = level;
            sent = false;
        }
        if (!sent && now >= due) {
            auto escape = methodCall(registry, keySource, keySourceInterface, "GenerateKeyboardEvent");
            appendInt32(*escape, escapeSymbol);
            appendText(*escape, "");
            appendUint32(*escape, pressAndRelease);
            bus->send(std::move(escape));
            sent = true;
            sentAny = true;
        }
        bus->wait([] { return false; }, std::min(Clock::now() + betweenLooks, deadline));
    }
}

AXActionResult AtspiAccessibility::performAction(const AXElement& element, std::string_view name) {
    const auto& handle = dynamic_cast<const Handle&>(element.handle());
    const auto limit = limitOf(handle);
    const auto object = objectOf(handle);
    if (!object || object->bus.empty()) {
        return AXActionResult::failed;
    }
    const auto found = facts(*object, AtspiFact::role | AtspiFact::states | AtspiFact::actions, limit);
    if (!found) {
        return AXActionResult::failed;
    }
    if (const auto index = atspiActionIndex(*found, name)) {
        const auto focus = focus_.in(object->bus);
        press_ = focus && focus->object != *object ? std::optional(Press{*object, focus->object}) : std::nullopt;
        return doAction(*object, *index, limit);
    }
    return name == "AXCancel" && isOpenMenu(*found) ? dismissMenu(*object, limit) : AXActionResult::failed;
}

std::vector<std::string> AtspiAccessibility::actionNames(const AXElement& element) {
    const auto& handle = dynamic_cast<const Handle&>(element.handle());
    const auto object = objectOf(handle);
    const auto found =
        object ? facts(*object, AtspiFact::role | AtspiFact::states | AtspiFact::actions, limitOf(handle)) : nullptr;
    if (!found) {
        return {};
    }
    auto names = actionNamesOf(*found);
    if (isOpenMenu(*found) && std::ranges::find(names, "AXCancel") == names.end()) {
        names.emplace_back("AXCancel");
    }
    return names;
}

bool AtspiAccessibility::setAttribute(const AXElement& element, std::string_view name, const AXValue& value) {
    const auto& handle = dynamic_cast<const Handle&>(element.handle());
    const auto object = objectOf(handle);
    const auto* range = std::get_if<AXTextRange>(&value);
    if (!object || object->bus.empty() || name != "AXSelectedTextRange" || range == nullptr) {
        return false;
    }
    return select(*object, *range, limitOf(handle));
}

bool AtspiAccessibility::select(const AtspiObject& object, const AXTextRange& range, const Limit& limit) {
    const auto begin = static_cast<std::int32_t>(range.location);
    const auto end = static_cast<std::int32_t>(range.location + range.length);
    const auto call = [&](const char* member, std::initializer_list<std::int32_t> arguments) {
        auto message = methodCall(object.bus, object.path, textInterface, member);
        for (const auto argument : arguments) {
            appendInt32(*message, argument);
        }
        return answer(std::move(message), limit) == true;
    };
    if (range.length == 0) {
        static_cast<void>(call("RemoveSelection", {0})); // there may be none
        return call("SetCaretOffset", {begin});
    }
    return call("SetSelection", {0, begin, end}) || call("AddSelection", {begin, end});
}

std::optional<core::Subscription> AtspiAccessibility::observe(const AXElement& application, std::string_view name,
                                                              std::function<void(const AXElement&)> handler) {
    const auto& handle = dynamic_cast<const Handle&>(application.handle());
    const auto object = objectOf(handle);
    if (!object || object->bus.empty()) {
        return std::nullopt;
    }
    return notifications_.observe(
        object->bus, name, [this, timeout = handle.timeout, handler = std::move(handler)](const AtspiObject& about) {
            handler(reference(about, timeout));
        });
}

} // namespace quillane
