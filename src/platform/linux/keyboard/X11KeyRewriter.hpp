// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/linux/keyboard/X11GrabGuard.hpp"
#include "platform/linux/keyboard/X11Keyboard.hpp"
#include "platform/linux/keyboard/X11RawInput.hpp"
#include "platform/linux/keyboard/X11SpareKeys.hpp"
#include "platform/linux/x11/X11Connection.hpp"

#include <QTimer>

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include <xcb/xinput.h>

namespace quillane {

/// Makes Shift with some keys type another character than in the map, and holds back what is typed.
///
/// The server stops at such a press (a synchronous grab) until it is told what to do: let it through, or drop it and
/// press a spare key that types the character. Whatever the user has typed meanwhile waits in the server, and the spare
/// key would come out after it. So the keyboard is released for one event only, to look at the queue. If that event is
/// the spare key, as it nearly always is, the order is right. Otherwise all keys that type are grabbed until the spare
/// key has come out, and those that come out before it are typed after it, with spare keys too. The same happens when
/// no spare key is free.
///
/// To hold keys back, it grabs all keys that type and drops their presses; when it lets go, spare keys type them.
class X11KeyRewriter {
public:
    /// Decides a press that no raw event has announced, such as a repetition of a held key.
    using Decide = std::function<std::optional<char16_t>(const X11RawEvent&)>;

    X11KeyRewriter(X11Connection& connection, X11RawInput& input, X11Keyboard& keyboard, Decide decide);
    ~X11KeyRewriter();

    /// Stops at these keys with Shift from now on, and at no others.
    void setKeys(std::span<const xcb_keycode_t> keys);

    /// Sets what the raw press that was just announced types, if not its own character.
    void remember(const X11RawEvent& press, std::optional<char16_t> replacement);

    /// True for a key that only this class presses.
    [[nodiscard]] bool isOwn(xcb_keycode_t keycode) const { return spares_.isSpare(keycode); }

    /// Keeps back what is typed from now on. Does nothing where no key is spare.
    void hold();

    /// Types what was kept back.
    void letGo();

    [[nodiscard]] bool isHolding() const { return holding_; }

    /// Leaves the keyboard as it was found.
    void giveBack();

private:
    struct Press {
        xcb_keycode_t keycode;
        std::uint16_t master;
        xcb_timestamp_t time;
        unsigned group;
        std::uint8_t modifierBits;
        bool isRepeat;
        std::uint32_t sequence; ///< of the event
    };

    /// A symbol to type, on the device that its key was pressed on.
    struct Output {
        std::uint32_t keysym;
        std::uint16_t device;
    };

    struct Decision {
        xcb_timestamp_t time = 0;
        std::uint16_t device = 0;
        std::optional<char16_t> replacement;
    };

    struct TypingGrab {
        xcb_keycode_t keycode;
        std::vector<std::uint32_t> modifiers;
    };

    void handleEvent(const xcb_generic_event_t& event);
    void handleGrabbed(const xcb_input_key_press_event_t& event, bool isPress);
    void resume();
    void answer(const Press& press);
    [[nodiscard]] std::uint32_t wantedKeysym(const Press& press);
    void substitute(const Press& press, const Output& output);
    void typeBacklog();
    void checkLook(std::uint64_t look, std::uint16_t master, xcb_keycode_t keycode);
    void handleOwnKey(const X11RawEvent& event);
    void type(xcb_keycode_t keycode, std::uint16_t device);
    void letThrough(std::uint16_t master);
    void grab(xcb_keycode_t keycode, std::span<const std::uint32_t> modifiers);
    void ungrab(xcb_keycode_t keycode, std::span<const std::uint32_t> modifiers);
    void grabKeys();
    void ungrabKeys();

    [[nodiscard]] bool isBehind() const { return !outputs_.empty() || !backlog_.empty(); }

    void stopAtTypingKeys(std::uint8_t modifierBits);
    void endStopAtTypingKeys();
    void forgetOutputs();
    void forget();
    void guardGrabs();

    X11Connection& connection_;
    X11Keyboard& keyboard_;
    Decide decide_;
    X11SpareKeys spares_;
    std::vector<xcb_keycode_t> keys_;
    std::vector<std::uint32_t> keyModifiers_; ///< modifiers that `keys_` are grabbed with
    std::array<Decision, 256> decisions_;     ///< by key code
    std::optional<Press> waiting_;            ///< for the map
    std::deque<xcb_keycode_t> outputs_;       ///< spare keys that were pressed and have not come out yet
    std::deque<Output> backlog_;              ///< output that waits for spare keys
    bool holding_ = false;                    ///< the backlog is kept back
    bool looking_ = false;                    ///< the keyboard was released for one event
    std::uint64_t looks_ = 0;
    std::vector<TypingGrab> typingGrabs_;
    QTimer retry_;
    QTimer stopTimer_;
    QTimer mapTimer_; ///< of `waiting_`
    X11GrabGuard guard_;
    core::Lifetime lifetime_;
    core::Subscription events_;
    core::Subscription ownKeys_;
    core::Subscription readings_;
    core::Subscription losses_;
    core::Subscription openings_;
};

} // namespace quillane
