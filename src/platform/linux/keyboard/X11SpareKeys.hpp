// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/linux/keyboard/X11Keyboard.hpp"
#include "platform/linux/x11/X11Connection.hpp"
#include "platform/linux/x11/X11Reading.hpp"

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace quillane {

/// Key codes that no key uses, borrowed to type one symbol each, whatever modifiers are down and whatever group is in
/// use. A symbol keeps its key code as long as possible, because every change makes each application read the map
/// again. The borrowed codes are listed on the root window, so that they are found after a crash.
class X11SpareKeys {
public:
    X11SpareKeys(X11Connection& connection, X11Keyboard& keyboard);
    ~X11SpareKeys();

    /// A slow application reads a press late, but always with the newest map. So a key code keeps its symbol for this
    /// long after its release.
    static constexpr std::chrono::milliseconds minimumStay{300};

    /// False when the map has no spare key code at all.
    [[nodiscard]] bool canType() const { return !spares_.empty() || borrowable(); }

    /// The key code that types the symbol until it is released, once the server has executed the requests made so far.
    /// None while no key code is spare. The keyboard must be current.
    [[nodiscard]] std::optional<xcb_keycode_t> keycodeFor(std::uint32_t keysym);

    /// The key has been typed.
    void release(xcb_keycode_t keycode);

    [[nodiscard]] bool isSpare(xcb_keycode_t keycode) const;

    /// Restores all of them.
    void giveBack();

private:
    using Clock = std::chrono::steady_clock;

    struct Spare {
        xcb_keycode_t keycode;
        std::uint32_t keysym;
        Clock::time_point lastUse{}; ///< far in the future until the release
    };

    using KeyBits = std::array<std::uint8_t, 32>;

    [[nodiscard]] std::optional<xcb_keycode_t> borrowable() const;
    void assign(xcb_keycode_t keycode, std::uint32_t keysym);
    void setRepeating(const KeyBits& repeating);
    void readLeftovers();
    void sendRepeating();
    void takeOver(const xcb_get_property_reply_t& list);
    void checkAgainstMap();
    void publish();

    X11Connection& connection_;
    X11Keyboard& keyboard_;
    std::vector<Spare> spares_;
    std::optional<KeyBits> repeating_; ///< the original set of keys that repeat
    X11Reading repeatingReading_{[this] { sendRepeating(); }};
    xcb_atom_t listAtom_;
    core::Lifetime lifetime_;
    core::Subscription readings_;
    core::Subscription notices_;
    core::Subscription openings_;
};

} // namespace quillane
