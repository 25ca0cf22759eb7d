// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <Carbon/HotKeys.h>

#include <memory>
#include <optional>
#include <vector>

namespace quillane::standin {

/// Hot keys and the handlers of the application's event target.
class HotKeyRegistry {
public:
    struct Key {
        UInt32 keyCode;
        UInt32 modifiers;
        EventHotKeyID identifier;
    };

    struct Handler {
        EventHandlerUPP function;
        void* context;
        EventTypeSpec type;
    };

    [[nodiscard]] OSStatus add(const Key& key, EventHotKeyRef* registered);
    [[nodiscard]] OSStatus remove(EventHotKeyRef key);
    [[nodiscard]] OSStatus add(const Handler& handler, EventHandlerRef* installed);
    [[nodiscard]] OSStatus remove(EventHandlerRef handler);

    /// The user presses a key: if it is a hot key, the handlers hear of it from the main queue.
    void press(UInt32 keyCode, UInt32 modifiers);

    /// The handlers are given an event, now; what the last one of them answered.
    OSStatus send(std::optional<EventHotKeyID> parameter);

    [[nodiscard]] const std::vector<std::unique_ptr<Key>>& keys() const { return keys_; }

    bool installsHandlers = true;

    void settle();

private:
    std::vector<std::unique_ptr<Key>> keys_;
    std::vector<std::unique_ptr<Handler>> handlers_;
};

} // namespace quillane::standin
