// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/HotKeys.hpp"

#include "standins/macos/Mac.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

/// An event of a hot key.
struct OpaqueEvent {
    std::optional<EventHotKeyID> parameter;
};

namespace quillane::standin {

namespace {

template <typename T, typename Reference>
bool erase(std::vector<std::unique_ptr<T>>& list, Reference reference) {
    return std::erase_if(list,
                         [&](const auto& entry) { return reinterpret_cast<Reference>(entry.get()) == reference; }) == 1;
}

} // namespace

OSStatus HotKeyRegistry::add(const Key& key, EventHotKeyRef* registered) {
    const bool isTaken = std::ranges::any_of(
        keys_, [&](const auto& other) { return other->keyCode == key.keyCode && other->modifiers == key.modifiers; });
    if (isTaken) {
        return eventHotKeyExistsErr;
    }
    *registered = reinterpret_cast<EventHotKeyRef>(keys_.emplace_back(std::make_unique<Key>(key)).get());
    return noErr;
}

OSStatus HotKeyRegistry::remove(EventHotKeyRef key) {
    const bool wasThere = erase(keys_, key);
    EXPECT_TRUE(wasThere) << "a hot key that is not registered was given back";
    return wasThere ? noErr : eventHotKeyInvalidErr;
}

OSStatus HotKeyRegistry::add(const Handler& handler, EventHandlerRef* installed) {
    if (!installsHandlers) {
        return eventInternalErr;
    }
    *installed = reinterpret_cast<EventHandlerRef>(handlers_.emplace_back(std::make_unique<Handler>(handler)).get());
    return noErr;
}

OSStatus HotKeyRegistry::remove(EventHandlerRef handler) {
    const bool wasThere = erase(handlers_, handler);
    EXPECT_TRUE(wasThere) << "a handler that is not installed was removed";
    return wasThere ? noErr : eventInternalErr;
}

void HotKeyRegistry::press(UInt32 keyCode, UInt32 modifiers) {
    Mac::current().post([this, keyCode, modifiers] {
        const auto found = std::ranges::find_if(
            keys_, [&](const auto& key) { return key->keyCode == keyCode && key->modifiers == modifiers; });
        if (found != keys_.end()) {
            send((*found)->identifier);
        }
    });
}

OSStatus HotKeyRegistry::send(std::optional<EventHotKeyID> parameter) {
    OpaqueEvent event{parameter};
    auto status = eventNotHandledErr;
    for (std::size_t i = handlers_.size(); i > 0 && status == eventNotHandledErr; --i) { // the newest first
        const auto handler = *handlers_[i - 1];
        if (handler.type.eventClass == kEventClassKeyboard && handler.type.eventKind == kEventHotKeyPressed) {
            status = handler.function(nullptr, &event, handler.context);
        }
    }
    return status;
}

void HotKeyRegistry::settle() {
    EXPECT_TRUE(keys_.empty()) << "a hot key is still registered";
    EXPECT_TRUE(handlers_.empty()) << "an event handler is still installed";
}

} // namespace quillane::standin

using quillane::standin::Mac;

extern "C" {

EventTargetRef GetApplicationEventTarget() {
    return nullptr;
}

OSStatus InstallEventHandler(EventTargetRef /*target*/, EventHandlerUPP handler, ItemCount typeCount,
                             const EventTypeSpec* types, void* context, EventHandlerRef* installed) {
    if (typeCount != 1) {
        return paramErr;
    }
    return Mac::current().hotKeys.add({handler, context, *types}, installed);
}

OSStatus RemoveEventHandler(EventHandlerRef handler) {
    return Mac::current().hotKeys.remove(handler);
}

OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType type, EventParamType* /*actualType*/,
                           ByteCount size, ByteCount* /*actualSize*/, void* data) {
    if (name != kEventParamDirectObject || type != typeEventHotKeyID || size != sizeof(EventHotKeyID) ||
        !event->parameter) {
        return eventParameterNotFoundErr;
    }
    std::memcpy(data, &*event->parameter, sizeof(EventHotKeyID));
    return noErr;
}

OSStatus RegisterEventHotKey(UInt32 keyCode, UInt32 modifiers, EventHotKeyID identifier, EventTargetRef /*target*/,
                             UInt32 options, EventHotKeyRef* registered) {
    return options == 0 ? Mac::current().hotKeys.add({keyCode, modifiers, identifier}, registered) : paramErr;
}

OSStatus UnregisterEventHotKey(EventHotKeyRef key) {
    return Mac::current().hotKeys.remove(key);
}
}
