// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/keyboard/MacEventTap.hpp"

#include "core/keyboard/KeyHold.hpp"
#include "platform/macos/foundation/CFRef.hpp"
#include "platform/macos/foundation/MacActivity.hpp"
#include "platform/macos/foundation/MacAutoreleasePool.hpp"
#include "platform/macos/foundation/MacCallback.hpp"

#include <ApplicationServices/ApplicationServices.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace quillane {

namespace {

bool isTapNotice(EventType type) {
    return type == EventType::tapDisabledByTimeout || type == EventType::tapDisabledByUserInput;
}

bool isKeyEvent(EventType type) {
    return type == EventType::keyDown || type == EventType::keyUp || type == EventType::flagsChanged;
}

/// Marks an event that was held back and posted again: a tap gets those too.
constexpr std::int64_t heldMark = 0x5175696C6C616E65;

bool isMarked(CGEventRef event) {
    return CGEventGetIntegerValueField(event, kCGEventSourceUserData) == heldMark;
}

/// The event as a value. Notifications about the tap itself carry no usable event.
InputEvent inputEvent(EventType type, CGEventRef event) {
    InputEvent input{.type = type};
    if (!isTapNotice(type)) {
        input.flags = CGEventGetFlags(event);
    }
    if (isKeyEvent(type)) {
        input.keyCode = static_cast<core::KeyCode>(CGEventGetIntegerValueField(event, kCGKeyboardEventKeycode));
    }
    return input;
}

} // namespace

struct MacEventTap::Tap {
    MacActivity activity{"Watches the keyboard"}; // the system disables a tap that answers late
    Receiver receiver;
    CFRef<CFMachPortRef> port;
    CFRef<CFRunLoopSourceRef> source;
    bool holding = false;
    std::vector<CFRef<CGEventRef>> held; ///< presses and releases, in order

    ~Tap() {
        letGo();
        if (port) {
            CGEventTapEnable(port.get(), false);
            CFMachPortInvalidate(port.get());
        }
        if (source) {
            CFRunLoopRemoveSource(CFRunLoopGetMain(), source.get(), kCFRunLoopCommonModes);
        }
    }

    void letGo() {
        holding = false;
        for (const auto& event : std::exchange(held, {})) {
            CGEventSetIntegerValueField(event.get(), kCGEventSourceUserData, heldMark);
            CGEventPost(kCGSessionEventTap, event.get());
        }
    }

    /// A release is held back with its press.
    [[nodiscard]] bool holdsBack(const InputEvent& input) const {
        const auto isItsPress = [&](const auto& event) {
            return static_cast<EventType>(CGEventGetType(event.get())) == EventType::keyDown &&
                   CGEventGetIntegerValueField(event.get(), kCGKeyboardEventKeycode) == input.keyCode;
        };
        return holding && ((input.type == EventType::keyDown && core::keyHold::holds(input.keyCode, input.flags)) ||
                           (input.type == EventType::keyUp && std::ranges::any_of(held, isItsPress)));
    }

    /// The CGEventTapCallBack. Every event is passed on, those that are held back later.
    static CGEventRef receive(CGEventTapProxy, CGEventType number, CGEventRef event, void* tap) {
        const auto type = static_cast<EventType>(number);
        if (!isTapNotice(type) && (!event || isMarked(event))) {
            return event; // nothing to read, or read before
        }
        // A background agent gets no events of its own, after which AppKit would empty the pool.
        const AutoreleasePool pool;
        auto& self = *static_cast<Tap*>(tap);
        bool isHeld = false;
        guarded([&] {
            auto input = inputEvent(type, event);
            self.receiver(input);
            if (input.replacementText && isKeyEvent(type)) {
                const UniChar text = *input.replacementText;
                CGEventKeyboardSetUnicodeString(event, 1, &text);
            }
            if (self.holdsBack(input)) {
                self.held.push_back(CFRef<CGEventRef>::retain(event));
                isHeld = true;
            }
        });
        return isHeld ? nullptr : event;
    }
};

MacEventTap::MacEventTap() = default;
MacEventTap::~MacEventTap() = default;

bool MacEventTap::start(std::uint64_t mask, Receiver receiver) {
    stop();
    auto tap = std::make_unique<Tap>();
    tap->receiver = std::move(receiver);
    tap->port = CFRef<CFMachPortRef>::adopt(CGEventTapCreate(kCGSessionEventTap, kCGHeadInsertEventTap,
                                                             kCGEventTapOptionDefault, mask, &Tap::receive, tap.get()));
    if (!tap->port) {
        return false;
    }
    tap->source = CFRef<CFRunLoopSourceRef>::adopt(CFMachPortCreateRunLoopSource(nullptr, tap->port.get(), 0));
    if (!tap->source) {
        return false;
    }
    CFRunLoopAddSource(CFRunLoopGetMain(), tap->source.get(), kCFRunLoopCommonModes);
    CGEventTapEnable(tap->port.get(), true);
    if (!CGEventTapIsEnabled(tap->port.get())) {
        return false;
    }
    tap_ = std::move(tap);
    return true;
}

void MacEventTap::stop() {
    tap_.reset();
}

void MacEventTap::enable() {
    if (tap_) {
        CGEventTapEnable(tap_->port.get(), true);
    }
}

bool MacEventTap::isEnabled() const {
    return tap_ && CGEventTapIsEnabled(tap_->port.get());
}

void MacEventTap::setReplaceableKeys(std::span<const core::KeyCode>) {}

void MacEventTap::hold() {
    if (isEnabled()) {
        tap_->holding = true;
    }
}

void MacEventTap::letGo() {
    if (tap_) {
        tap_->letGo();
    }
}

bool MacEventTap::isHolding() const {
    return tap_ && tap_->holding;
}

} // namespace quillane
