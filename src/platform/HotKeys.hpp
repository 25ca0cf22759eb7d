// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/EventFlags.hpp"
#include "core/support/Subscription.hpp"

#include <functional>

namespace quillane {

/// A key that works whatever application is in front, with exactly these modifiers. Which locks are on does not matter.
struct HotKey {
    core::KeyCode keyCode = 0;
    core::EventFlags modifiers = 0; ///< of command, option, control and shift

    bool operator==(const HotKey&) const = default;
};

/// Keys that the system delivers to this program before any other. Main thread. Nothing here waits.
class HotKeys {
public:
    virtual ~HotKeys() = default;

    /// Registers a key until the token is dropped. `pressed` is called at each press, and not again while the key is
    /// held. When another program has the key, `taken` is called once, after this call has returned, and the key
    /// remains the other program's. A key can be registered once at a time.
    [[nodiscard]] virtual core::Subscription registerHotKey(const HotKey& key, std::function<void()> pressed,
                                                            std::function<void()> taken) = 0;
};

} // namespace quillane
