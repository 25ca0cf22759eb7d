// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/keyboard/MacHotKeys.hpp"

#include "platform/macos/foundation/MacAutoreleasePool.hpp"
#include "platform/macos/foundation/MacCallback.hpp"

#include <Carbon/Carbon.h>
#include <dispatch/dispatch.h>

#include <map>
#include <utility>

namespace quillane {

namespace {

constexpr OSType signature = 0x516C6E65; // "Qlne"

UInt32 carbonModifiers(core::EventFlags flags) {
    UInt32 modifiers = 0;
    modifiers |= (flags & core::flags::command) != 0 ? UInt32{cmdKey} : 0;
    modifiers |= (flags & core::flags::shift) != 0 ? UInt32{shiftKey} : 0;
    modifiers |= (flags & core::flags::option) != 0 ? UInt32{optionKey} : 0;
    modifiers |= (flags & core::flags::control) != 0 ? UInt32{controlKey} : 0;
    return modifiers;
}

/// A notice on its way to the main queue.
struct TakenNotice {
    std::weak_ptr<int> token;
    std::function<void()> taken;

    /// Takes over the notice.
    static void deliver(void* context) {
        const AutoreleasePool pool;
        guarded([&] {
            const std::unique_ptr<TakenNotice> notice(static_cast<TakenNotice*>(context));
            if (!notice->token.expired()) {
                notice->taken();
            }
        });
    }
};

} // namespace

struct MacHotKeys::State {
    struct Registered {
        EventHotKeyRef reference = nullptr;
        std::function<void()> pressed;
    };

    std::map<UInt32, Registered> keys;
    EventHandlerRef handler = nullptr;

    static OSStatus receive(EventHandlerCallRef /*call*/, EventRef event, void* context) {
        OSStatus result = eventNotHandledErr;
        guarded([&] {
            EventHotKeyID identifier{};
            if (GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID, nullptr, sizeof identifier,
                                  nullptr, &identifier) != noErr ||
                identifier.signature != signature) {
                return;
            }
            const auto& registered = static_cast<State*>(context)->keys;
            const auto found = registered.find(identifier.id);
            if (found == registered.end()) {
                return;
            }
            result = noErr;
            const AutoreleasePool pool;
            const auto pressed = found->second.pressed; // it may be unregistered by the call
            pressed();
        });
        return result;
    }
};

MacHotKeys::MacHotKeys() : state_(std::make_shared<State>()) {
    const EventTypeSpec type{kEventClassKeyboard, kEventHotKeyPressed};
    InstallEventHandler(GetApplicationEventTarget(), State::receive, 1, &type, state_.get(), &state_->handler);
}

MacHotKeys::~MacHotKeys() {
    for (const auto& [identifier, key] : state_->keys) {
        UnregisterEventHotKey(key.reference);
    }
    state_->keys.clear();
    if (state_->handler != nullptr) {
        RemoveEventHandler(state_->handler);
    }
}

core::Subscription MacHotKeys::registerHotKey(const HotKey& key, std::function<void()> pressed,
                                              std::function<void()> taken) {
    UInt32 identifier = 1; // the lowest that is free
    while (state_->keys.contains(identifier)) {
        ++identifier;
    }
    State::Registered registered{nullptr, std::move(pressed)};
    OSStatus status = eventInternalErr; // without a handler no press would arrive
    if (state_->handler != nullptr) {
        status = RegisterEventHotKey(key.keyCode, carbonModifiers(key.modifiers), EventHotKeyID{signature, identifier},
                                     GetApplicationEventTarget(), 0, &registered.reference);
    }
    if (status != noErr) {
        const auto alive = std::make_shared<int>(); // as long as the token
        dispatch_async_f(dispatch_get_main_queue(), new TakenNotice{alive, std::move(taken)}, &TakenNotice::deliver);
        return core::Subscription([alive] {});
    }
    state_->keys.emplace(identifier, std::move(registered));
    return core::Subscription([weak = std::weak_ptr<State>(state_), identifier] {
        const auto state = weak.lock();
        if (!state) {
            return;
        }
        if (const auto found = state->keys.find(identifier); found != state->keys.end()) {
            UnregisterEventHotKey(found->second.reference);
            state->keys.erase(found);
        }
    });
}

} // namespace quillane
