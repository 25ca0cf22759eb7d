// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/EventFlags.hpp"
#include "core/support/Lifetime.hpp"
#include "platform/linux/keyboard/X11Keymap.hpp"
#include "platform/linux/keyboard/X11RawInput.hpp"
#include "platform/linux/x11/X11Connection.hpp"
#include "platform/linux/x11/X11Reading.hpp"

#include <bitset>
#include <memory>
#include <optional>

namespace quillane {

/// The state of the core keyboard: what its keys mean, which modifiers are down, which group (layout) is in use. Kept
/// up to date from events, so that reading it costs nothing and never waits.
class X11Keyboard {
public:
    /// What has changed the group.
    enum class Cause { key, request };

    X11Keyboard(X11Connection& connection, X11RawInput& input);

    /// True when the map that was read is the server's, as far as is known.
    [[nodiscard]] bool isCurrent() const {
        return !keymapReading_.isOutstanding() && !stateReading_.isOutstanding() && !connection_.isLost();
    }

    [[nodiscard]] const X11Keymap& keymap() const { return keymap_; }

    /// Requests everything again.
    void reread();

    /// The modifiers that are down, and Caps Lock.
    [[nodiscard]] core::EventFlags flags() const;

    /// The same, but during `onKey`: as they were before the key.
    [[nodiscard]] core::EventFlags settledFlags() const { return told_ ? *told_ : flags(); }

    /// The modifiers that are locked, as bits of X: Caps Lock, Num Lock.
    [[nodiscard]] std::uint8_t lockedModifiers() const { return lockedModifiers_; }

    /// The keys that are down, by key code.
    [[nodiscard]] const std::bitset<256>& keysDown() const { return down_; }

    /// The master device, as XInput numbers it.
    [[nodiscard]] std::uint8_t device() const { return device_; }

    /// The group in use, counted from 0.
    [[nodiscard]] unsigned group() const { return group_; }

    /// Switches to a group, on the keyboard and all its devices. It counts as done from now on.
    void lockGroup(unsigned group);

    /// Each key press and release, once the state above reflects it.
    core::Subscription onKey(X11RawInput::Handler handler) { return keys_.subscribe(std::move(handler)); }

    core::Subscription onGroupChanged(std::function<void(Cause)> handler) {
        return groups_.subscribe(std::move(handler));
    }

    /// Caps Lock was turned on or off.
    core::Subscription onCapsLockChanged(std::function<void()> handler) {
        return capsLocks_.subscribe(std::move(handler));
    }

    /// The groups, or their names, may be different when the keyboard is next current.
    core::Subscription onLayoutNotice(std::function<void()> handler) {
        return layoutNotices_.subscribe(std::move(handler));
    }

    /// Map and state have been read again and are current.
    core::Subscription onCurrent(std::function<void()> handler) { return readings_.subscribe(std::move(handler)); }

private:
    void sendKeymap();
    void sendState();
    void finishLoading(X11Reading& reading);
    void handleKey(const X11RawEvent& event);
    void handleEvent(const xcb_generic_event_t& event);
    void handleState(const xcb_xkb_state_notify_event_t& event, std::uint32_t sequence);
    void takeLocks(std::uint8_t modifiers);
    void takeGroup(unsigned group, std::uint32_t sequence, Cause cause);
    [[nodiscard]] std::uint8_t modifierBitsDown() const;
    void updateDownFlags();

    X11Connection& connection_;
    X11Keymap keymap_;
    std::uint8_t device_ = 0;
    std::bitset<256> down_;
    core::EventFlags downFlags_ = 0;
    std::optional<core::EventFlags> told_; ///< while listeners are notified of a key: the flags before it
    std::uint8_t lockedModifiers_ = 0;
    unsigned group_ = 0;
    std::optional<std::uint32_t> lockRequest_; ///< states reported before it was executed have an older group
    X11Reading keymapReading_{[this] { sendKeymap(); }};
    X11Reading stateReading_{[this] { sendState(); }};
    core::Lifetime lifetime_;
    core::Listeners<const X11RawEvent&> keys_;
    core::Listeners<Cause> groups_;
    core::Listeners<> capsLocks_;
    core::Listeners<> layoutNotices_;
    core::Listeners<> readings_;
    core::Subscription inputKeys_;
    core::Subscription inputDevices_;
    core::Subscription events_;
    core::Subscription losses_;
    core::Subscription openings_;
};

} // namespace quillane
