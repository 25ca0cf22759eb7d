// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/EventFlags.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace quillane {

/// Event types by their Quartz numbers (CGEventTypes.h).
enum class EventType : std::uint32_t {
    leftMouseDown = 1,
    rightMouseDown = 3,
    keyDown = 10,
    keyUp = 11,
    flagsChanged = 12,
    scrollWheel = 22,
    otherMouseDown = 25,
    tapDisabledByTimeout = 0xFFFFFFFE,
    tapDisabledByUserInput = 0xFFFFFFFF,
};

/// The mask bit of an event type: zero for the pseudo-types, whose numbers no mask can hold.
[[nodiscard]] constexpr std::uint64_t maskBit(EventType type) {
    const auto number = static_cast<std::uint32_t>(type);
    return number < 64 ? std::uint64_t{1} << number : 0;
}

/// One event as it passes through the tap.
struct InputEvent {
    EventType type{};
    core::KeyCode keyCode = 0;  ///< of key events; of the modifier that changed for flagsChanged
    core::EventFlags flags = 0; ///< modifiers after the event
    /// Set by the receiver: the one character that the event types instead of its own. Key code and flags stay.
    std::optional<char16_t> replacementText;
};

/// The system-wide stream of keyboard, click and scroll events. Main thread only.
/// Needs the Accessibility permission on macOS, an X server with XInput 2.2 on Linux.
class EventTap {
public:
    /// Called for each event before the application in front gets it. It may set `replacementText`; every event is
    /// passed on, though later while the tap holds it back. It must return quickly and must not start or stop the tap,
    /// `enable` excepted.
    using Receiver = std::function<void(InputEvent&)>;

    virtual ~EventTap() = default;

    /// Creates the tap for the types in the mask. False when the system refuses; then nothing is left behind.
    [[nodiscard]] virtual bool start(std::uint64_t mask, Receiver receiver) = 0;

    /// Removes the tap and gives back every key it holds. No event is received afterwards.
    virtual void stop() = 0;

    /// Enables a created tap again after a tapDisabled… event. Does nothing when no tap was created.
    virtual void enable() = 0;

    /// True while a tap exists and receives events. Never blocks.
    [[nodiscard]] virtual bool isEnabled() const = 0;

    /// Names the keys whose text the receiver may replace while Shift is held in a right-to-left input source; other
    /// keys need only be observed. A backend that has to take such keys away from the application first keeps to these.
    virtual void setReplaceableKeys(std::span<const core::KeyCode> keys) = 0;

    /// Holds presses back from the application from now on, those of `core::keyHold::holds`; the receiver gets every
    /// event at once. Does nothing while no tap receives events. The caller lets go after `core::keyHold::limit`.
    virtual void hold() = 0;

    /// Hands on what is held back, in the order of typing, and holds nothing back any more.
    virtual void letGo() = 0;

    [[nodiscard]] virtual bool isHolding() const = 0;
};

} // namespace quillane
