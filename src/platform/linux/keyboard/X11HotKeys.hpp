// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/HotKeys.hpp"
#include "platform/linux/keyboard/X11Keyboard.hpp"
#include "platform/linux/x11/X11Connection.hpp"

#include <array>
#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <vector>

namespace quillane {

/// Passive grabs of the core protocol (XGrabKey), with which programs reserve keys on X11, so that conflicts show.
/// Command is the Super key, and the key is the one in the same position as on a Mac, whatever the layout. The
/// connection must not be the one that the keyboard is watched on: a client that holds a grab gets its raw events
/// through it.
class X11HotKeys final : public HotKeys {
public:
    X11HotKeys(X11Connection& connection, X11Keyboard& keyboard);
    ~X11HotKeys() override;

    [[nodiscard]] core::Subscription registerHotKey(const HotKey& key, std::function<void()> pressed,
                                                    std::function<void()> taken) override;

private:
    struct Registered {
        HotKey key;
        std::function<void()> pressed;
        std::function<void()> taken;
        xcb_keycode_t keycode = 0;
        std::vector<std::uint16_t> modifiers; ///< modifiers that it is grabbed with; empty while it is not
        bool isTaken = false;
    };

    using Keys = std::list<std::shared_ptr<Registered>>; // shared with pending answers

    void grab(const std::shared_ptr<Registered>& key);
    void ungrab(Registered& key);
    void regrab();
    void handle(const xcb_generic_event_t& event);
    void handlePress(const xcb_key_press_event_t& press);
    void reportPress(const std::shared_ptr<Registered>& key);
    void requestDetectableRepeat();
    [[nodiscard]] std::vector<std::uint16_t> modifiersFor(core::EventFlags flags) const;

    X11Connection& connection_;
    X11Keyboard& keyboard_;
    Keys keys_;
    std::map<std::uint32_t, std::weak_ptr<Registered>> requests_; ///< that may still fail
    xcb_keycode_t held_ = 0; ///< the key that was pressed last, held unless released since
    xcb_timestamp_t heldSince_ = 0;
    std::array<xcb_timestamp_t, 256> released_{};                             ///< when each key was pressed
    std::shared_ptr<X11HotKeys*> self_ = std::make_shared<X11HotKeys*>(this); // guards tokens that may outlive this
    core::Subscription events_;
    core::Subscription losses_;
    core::Subscription openings_;
    core::Subscription keymaps_;
    core::Subscription releases_;
};

} // namespace quillane
