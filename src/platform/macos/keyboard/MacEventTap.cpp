// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/keyboard/MacEventTap.hpp"

#include "platform/macos/foundation/CFRef.hpp"
#include "platform/macos/foundation/MacActivity.hpp"
#include "platform/macos/foundation/MacAutoreleasePool.hpp"
#include "platform/macos/foundation/MacCallback.hpp"

#include <ApplicationServices/ApplicationServices.h>

#include <utility>

namespace quillane {

namespace {

bool isTapNotice(EventType type) {
    return type == EventType::tapDisabledByTimeout || type == EventType::tapDisabledByUserInput;
}

bool isKeyEvent(EventType type) {
    return type == EventType::keyDown || type == EventType::keyUp || type == EventType::flagsChanged;
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

    ~Tap() {
        if (port) {
            CGEventTapEnable(port.get(), false);
            CFMachPortInvalidate(port.get());
        }
        if (source) {
            CFRunLoopRemoveSource(CFRunLoopGetMain(), source.get(), kCFRunLoopCommonModes);
        }
    }

    /// The CGEventTapCallBack. Every event is passed on.
    static CGEventRef receive(CGEventTapProxy, CGEventType number, CGEventRef event, void* tap) {
        const auto type = static_cast<EventType>(number);
        if (!event && !isTapNotice(type)) {
            return event; // there is nothing to read
        }
        // A background agent gets no events of its own, after which AppKit would empty the pool.
        const AutoreleasePool pool;
        guarded([&] {
            auto input = inputEvent(type, event);
            static_cast<Tap*>(tap)->receiver(input);
            if (input.replacementText && isKeyEvent(type)) {
                const UniChar text = *input.replacementText;
                CGEventKeyboardSetUnicodeString(event, 1, &text);
            }
        });
        return event;
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

} // namespace quillane
