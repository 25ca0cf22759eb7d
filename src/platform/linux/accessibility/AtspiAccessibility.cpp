// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/accessibility/AtspiAccessibility.hpp"

#include "platform/linux/accessibility/AtspiHandle.hpp"
#include "platform/linux/accessibility/OwnFocus.hpp"
#include "platform/linux/dbus/SessionBus.hpp"

#include <algorithm>
#include <utility>

#include <unistd.h>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr auto defaultTimeout = 150ms;
constexpr auto keptFor = 500ms;      // facts about the focused element; and while its application is silent
constexpr auto renewedAfter = 100ms; // while it is being asked for
constexpr auto silentFor = 1s;       // an application that has not answered is not asked again within this time

} // namespace

AtspiAccessibility::AtspiAccessibility(SessionBus& session) : bus_(session), focus_(bus_), notifications_(bus_) {
    losses_ = bus_.onLost([this] {
        known_.reset();
        press_.reset();
        renewal_.reset();
        unanswered_.clear();
    });
    moves_ = focus_.onMoved([this](BusConnection& bus, const AtspiFocus::Focus& focus) { askAhead(bus, focus); });
}

AtspiAccessibility::~AtspiAccessibility() = default;

AXElement AtspiAccessibility::application(pid_t pid) {
    return AXElement(std::make_shared<Handle>(pid, AtspiObject{}, std::nullopt));
}

void AtspiAccessibility::setMessagingTimeout(const AXElement& element, std::chrono::milliseconds timeout) {
    dynamic_cast<Handle&>(element.handle()).timeout = timeout;
}

std::optional<AXValue> AtspiAccessibility::attribute(const AXElement& element, std::string_view name) {
    auto values = read(dynamic_cast<const Handle&>(element.handle()), std::span(&name, 1), 0);
    if (!values || std::holds_alternative<std::monostate>(values->front())) {
        return std::nullopt;
    }
    return std::move(values->front());
}

std::optional<std::vector<AXValue>> AtspiAccessibility::attributes(const AXElement& element,
                                                                   std::span<const std::string_view> names) {
    // Every object has a role: an answer to that distinguishes a missing attribute from a failed call.
    return read(dynamic_cast<const Handle&>(element.handle()), names, AtspiFactSet{} | AtspiFact::role);
}

bool AtspiAccessibility::isAnswering(const AXElement& element) {
    const auto& handle = dynamic_cast<const Handle&>(element.handle());
    const auto object = objectOf(handle);
    auto* bus = bus_.connection();
    return object && (object->bus.empty() || (bus != nullptr && mayAsk(*bus, object->bus, limitOf(handle))));
}

bool AtspiAccessibility::isAttributeSettable(const AXElement& element, std::string_view name) {
    const auto& handle = dynamic_cast<const Handle&>(element.handle());
    const auto* row = findSettable(name);
    const auto object = row != nullptr ? objectOf(handle) : std::nullopt;
    const auto found = object ? facts(*object, row->needs, limitOf(handle)) : nullptr;
    return found && row->isSettable(*found);
}

std::optional<std::vector<AXValue>>
AtspiAccessibility::read(const Handle& handle, std::span<const std::string_view> names, AtspiFactSet besides) {
    if (auto* bus = bus_.connection()) {
        bus->dispatchArrivedSignals(); // an announced focus change must not be overlooked
    }
    const auto object = objectOf(handle);
    if (!object) {
        return std::nullopt;
    }
    const auto limit = limitOf(handle);
    AtspiFactSet needs = besides;
    for (const auto name : names) {
        const auto* row = findAttribute(name);
        needs |= row != nullptr ? row->needs : 0;
        if (handle.pid != 0 && name == "AXRole") { // Chromium makes its tree when it is asked for attributes
            needs = needs | AtspiFact::extras;
            focus_.searchAgain(object->bus);
        }
    }
    const auto found = needs != 0 ? facts(*object, needs, limit) : nullptr;
    if (needs != 0 && !found) {
        return std::nullopt;
    }
    std::vector<AXValue> values;
    for (const auto name : names) {
        if (handle.pid != 0 && name == "AXFocusedUIElement") {
            const auto focused = focusedObject(object->bus, limit);
            values.push_back(focused ? AXValue(reference(*focused, handle.timeout)) : AXValue());
        } else if (auto composite = compositeValue(handle, *object, name, limit)) {
            values.push_back(present(std::move(*composite), handle.timeout));
        } else {
            const auto* row = findAttribute(name);
            values.push_back(row != nullptr ? present(row->value(*found), handle.timeout) : AXValue());
        }
    }
    return values;
}

AXValue AtspiAccessibility::present(AtspiValue value, std::optional<std::chrono::milliseconds> timeout) const {
    if (const auto* object = std::get_if<AtspiObject>(&value)) {
        return reference(*object, timeout);
    }
    if (const auto* objects = std::get_if<std::vector<AtspiObject>>(&value)) {
        std::vector<AXElement> elements;
        std::ranges::transform(*objects, std::back_inserter(elements),
                               [&](const AtspiObject& object) { return reference(object, timeout); });
        return elements;
    }
    if (auto* text = std::get_if<std::string>(&value)) {
        return std::move(*text);
    }
    if (const auto* range = std::get_if<AXTextRange>(&value)) {
        return *range;
    }
    if (const auto* number = std::get_if<std::int64_t>(&value)) {
        return *number;
    }
    const auto* flag = std::get_if<bool>(&value);
    return flag != nullptr ? AXValue(*flag) : AXValue();
}

AtspiAccessibility::Limit AtspiAccessibility::limitOf(const Handle& handle) {
    return {Clock::now(), handle.timeout.value_or(defaultTimeout)};
}

std::optional<AtspiObject> AtspiAccessibility::objectOf(const Handle& handle) const {
    if (handle.pid == 0) {
        return handle.object;
    }
    if (handle.pid == getpid()) {
        return ownApplication();
    }
    auto application = focus_.applicationOf(handle.pid);
    return application ? std::optional(AtspiObject{std::move(*application), atspiRootPath}) : std::nullopt;
}

AXElement AtspiAccessibility::reference(const AtspiObject& object,
                                        std::optional<std::chrono::milliseconds> timeout) const {
    std::optional<pid_t> pid;
    if (object.path == atspiRootPath) {
        pid = object.bus.empty() ? getpid() : focus_.processOf(object.bus);
    }
    return AXElement(pid ? std::make_shared<Handle>(*pid, AtspiObject{}, timeout)
                         : std::make_shared<Handle>(0, object, timeout));
}

std::shared_ptr<AtspiFacts> AtspiAccessibility::facts(const AtspiObject& object, AtspiFactSet which,
                                                      const Limit& limit) {
    if (object.bus.empty()) {
        return ownFacts(object);
    }
    auto* bus = bus_.connection();
    if (bus == nullptr) {
        return nullptr;
    }
    if ((which & ~editingFacts) == 0 && known_ && known_->object == object && isUsable(*known_, limit.now)) {
        return known_->facts->isRefused() ? nullptr : known_->facts;
    }
    if (!mayAsk(*bus, object.bus, limit)) {
        return nullptr;
    }
    const Request request{object, 0, limit.now, requestFacts(*bus, object, which)};
    return waitFor(*bus, request, limit) && !request.facts->isRefused() ? request.facts : nullptr;
}

bool AtspiAccessibility::mayAsk(BusConnection& bus, const std::string& application, const Limit& limit) const {
    const auto silent = unanswered_.find(application);
    if (silent != unanswered_.end() && !silent->second.facts->isComplete()) {
        bus.dispatchArrivedSignals(); // the answer may have arrived already
    }
    return silent == unanswered_.end() || silent->second.facts->isComplete() ||
           limit.now - silent->second.begin < limit.timeout || limit.now - silent->second.begin > silentFor;
}

std::optional<AtspiObject> AtspiAccessibility::focusedObject(const std::string& application, const Limit& limit) {
    if (application.empty()) {
        return ownFocusedObject();
    }
    auto* bus = bus_.connection();
    ignoreFocusOfPress(application, limit);
    for (int attempt = 0; attempt < 2 && bus != nullptr; ++attempt) {
        auto focus = focus_.in(application);
        if (!focus) {
            if (const auto* search = focus_.search(application)) {
                bus->wait([&] { return !search->isRunning(); }, search->begin() + limit.timeout);
            }
            focus = focus_.in(application);
        }
        const auto found = focus ? focusFacts(*bus, *focus, limit) : nullptr;
        if (!found) {
            return std::nullopt;
        }
        const bool hasState = found->is(AtspiState::focused);
        const bool isClosed = isMenuItem(*found) && !found->is(AtspiState::showing); // Qt announces no focus after it
        if (found->is(AtspiState::defunct) || !(hasState || found->is(AtspiState::focusable)) || isClosed) {
            focus_.forget(focus->object);
        } else if (focus_.confirm(focus->object, hasState, known_->begin)) {
            return focus->object;
        }
    }
    return std::nullopt;
}

/// LibreOffice announces a button that was pressed from outside as focused, although keys still go to the document.
void AtspiAccessibility::ignoreFocusOfPress(const std::string& application, const Limit& limit) {
    const auto focus = press_ && press_->object.bus == application ? focus_.in(application) : std::nullopt;
    if (!focus || focus->object == press_->focused) {
        return; // the focus event may still arrive
    }
    if (focus->object == press_->object) {
        const auto before = facts(press_->focused, AtspiFactSet{} | AtspiFact::states, limit);
        if (!before) {
            return; // a busy application is asked with the next question
        }
        if (before->is(AtspiState::focused) && !before->is(AtspiState::defunct)) {
            focus_.restore(press_->focused);
        }
    }
    press_.reset();
}

/// The first key after a focus change then finds the answers.
void AtspiAccessibility::askAhead(BusConnection& bus, const AtspiFocus::Focus& focus) {
    if (focus_.processOf(focus.object.bus) != getpid()) {
        renewal_ = Request{focus.object, focus.change, Clock::now(), requestFacts(bus, focus.object, editingFacts)};
    }
}

bool AtspiAccessibility::isUsable(const Request& known, Clock::time_point now) const {
    const bool isFresh = now - known.begin < keptFor;
    const bool isAskedAgain = renewal_ && renewal_->object == known.object && renewal_->change == known.change &&
                              !renewal_->facts->isComplete();
    return isFresh || (isAskedAgain && now - renewal_->firstBegin < keptFor && focus_.holds(known.object));
}

std::shared_ptr<AtspiFacts> AtspiAccessibility::focusFacts(BusConnection& bus, const AtspiFocus::Focus& focus,
                                                           const Limit& limit) {
    const auto concerns = [&](const std::optional<Request>& request) {
        return request && request->object == focus.object && request->change == focus.change;
    };
    if (concerns(renewal_) && renewal_->facts->isComplete()) {
        known_ = std::exchange(renewal_, std::nullopt);
    }
    const auto renew = [&] {
        if (!concerns(renewal_) || limit.now - renewal_->begin > silentFor) {
            const auto firstBegin = concerns(renewal_) ? renewal_->firstBegin : limit.now;
            renewal_ = Request{focus.object, focus.change, limit.now, requestFacts(bus, focus.object, editingFacts),
                               firstBegin};
        }
    };
    const bool mayClose = concerns(known_) && isMenuItem(*known_->facts); // a menu closes without an event
    if (concerns(known_) && limit.now - known_->begin < keptFor && !mayClose) {
        if (limit.now - known_->begin > renewedAfter) {
            renew();
        }
        return known_->facts;
    }
    renew();
    if (waitFor(bus, *renewal_, limit)) {
        known_ = std::exchange(renewal_, std::nullopt);
        return known_->facts;
    }
    return concerns(known_) && !mayClose && isUsable(*known_, limit.now) ? known_->facts : nullptr;
}

bool AtspiAccessibility::waitFor(BusConnection& bus, const Request& request, const Limit& limit) {
    // The time runs from the question: joining an older question does not extend the wait.
    bus.wait([&] { return request.facts->isComplete(); }, request.begin + limit.timeout);
    std::erase_if(unanswered_, [&](const auto& entry) {
        return entry.second.facts->isComplete() || limit.now - entry.second.begin > silentFor;
    });
    if (!request.facts->isComplete()) {
        unanswered_.try_emplace(request.object.bus, request);
        return false;
    }
    return true;
}

} // namespace quillane
