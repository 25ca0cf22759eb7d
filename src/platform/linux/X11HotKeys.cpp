// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/X11HotKeys.hpp"

#include "platform/linux/X11KeyCodes.hpp"
#include "platform/linux/X11Xkb.hpp"

#include <algorithm>
#include <utility>

namespace quillane {

namespace {

constexpr core::EventFlags modifierFlags =
    core::flags::command | core::flags::option | core::flags::control | core::flags::shift;

} // namespace

X11HotKeys::X11HotKeys(X11Connection& connection, X11Keyboard& keyboard)
    : connection_(connection),
      keyboard_(keyboard),
      events_(connection.onEvent([this](const xcb_generic_event_t& event) { handle(event); })),
      losses_(connection.onLost([this] {
          held_ = 0;
          requests_.clear();
          for (const auto& key : keys_) {
              key->modifiers.clear(); // the grabs went with the connection
          }
      })),
      openings_(connection.onOpened([this] {
          tellRepeatsApart();
          grabAnew();
      })),
      keymaps_(keyboard.onCurrent([this] { grabAnew(); })) {
    tellRepeatsApart();
}

X11HotKeys::~X11HotKeys() {
    for (const auto& key : keys_) {
        ungrab(*key);
    }
}

core::Subscription X11HotKeys::registerHotKey(const HotKey& key, std::function<void()> pressed,
                                              std::function<void()> taken) {
    const auto registered =
        std::make_shared<Registered>(Registered{key, std::move(pressed), std::move(taken), 0, {}, false});
    keys_.push_back(registered);
    grab(registered);
    return core::Subscription([weak = std::weak_ptr(self_), registered] {
        if (const auto self = weak.lock()) {
            (*self)->ungrab(*registered);
            (*self)->keys_.remove(registered);
        }
    });
}

std::vector<std::uint16_t> X11HotKeys::modifiersFor(core::EventFlags flags) const {
    const auto& keymap = keyboard_.keymap();
    std::uint16_t bits = 0;
    core::EventFlags found = 0;
    for (unsigned code = keymap.firstKeycode(); code <= keymap.lastKeycode(); ++code) {
        const auto keycode = static_cast<xcb_keycode_t>(code);
        const auto* modifier = keymap.modifier(keycode);
        if (modifier != nullptr && (modifier->flags & flags & modifierFlags) != 0) {
            bits = static_cast<std::uint16_t>(bits | keymap.modifierBit(keycode));
            found |= modifier->flags & modifierFlags;
        }
    }
    if ((found & flags) != (flags & modifierFlags)) {
        return {}; // a modifier that this keyboard has not got
    }
    std::vector<std::uint16_t> all;
    for (const unsigned locks : {0U, unsigned{XCB_MOD_MASK_LOCK}}) {
        for (const unsigned numLock : {0U, unsigned{keymap.numLock()}}) {
            all.push_back(static_cast<std::uint16_t>(bits | locks | numLock));
        }
    }
    std::ranges::sort(all);
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

void X11HotKeys::grab(const std::shared_ptr<Registered>& key) {
    const auto keycode = X11KeyCodes::keycode(key->key.keyCode);
    auto modifiers = modifiersFor(key->key.modifiers);
    if (!keycode || modifiers.empty() || connection_.isLost()) {
        return; // made when the map is known and the connection is there
    }
    key->keycode = *keycode;
    key->modifiers = std::move(modifiers);
    auto* c = connection_.raw();
    for (const auto bits : key->modifiers) {
        const auto cookie =
            xcb_grab_key(c, 0, connection_.root(), bits, key->keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        requests_[cookie.sequence] = key;
    }
    // The errors of those that another program has come before this answer.
    const auto last = xcb_get_input_focus(c);
    connection_.await<xcb_get_input_focus_reply_t>(last, self_, [this, weak = std::weak_ptr(key)](const auto* reply) {
        const auto grabbed = weak.lock();
        std::erase_if(requests_, [&](const auto& request) { return request.second.lock() == grabbed; });
        if (!reply || !grabbed || !grabbed->isTaken || std::ranges::find(keys_, grabbed) == keys_.end()) {
            return;
        }
        ungrab(*grabbed); // with some locks on it would work, and with others it would not
        const auto taken = grabbed->taken;
        taken();
    });
    connection_.flush();
}

void X11HotKeys::ungrab(Registered& key) {
    const auto modifiers = std::exchange(key.modifiers, {});
    if (!modifiers.empty() && !connection_.isLost()) {
        for (const auto bits : modifiers) {
            xcb_ungrab_key(connection_.raw(), key.keycode, connection_.root(), bits);
        }
        connection_.flush();
    }
}

void X11HotKeys::grabAnew() {
    for (const auto& key : Keys(keys_)) { // a key that is taken may be dropped meanwhile
        if (!key->isTaken && key->modifiers != modifiersFor(key->key.modifiers)) {
            ungrab(*key);
            grab(key);
        }
    }
}

void X11HotKeys::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7fU) {
    case 0: // an error
        if (const auto request = requests_.find(event.full_sequence); request != requests_.end()) {
            if (const auto key = request->second.lock()) {
                key->isTaken = true;
            }
        }
        return;
    case XCB_KEY_PRESS:
        handlePress(reinterpret_cast<const xcb_key_press_event_t&>(event));
        return;
    case XCB_KEY_RELEASE:
        if (reinterpret_cast<const xcb_key_release_event_t&>(event).detail == held_) {
            held_ = 0;
        }
        return;
    default:
        return;
    }
}

void X11HotKeys::handlePress(const xcb_key_press_event_t& press) {
    if (std::exchange(held_, press.detail) == press.detail) {
        return; // it repeats
    }
    for (const auto& key : Keys(keys_)) {
        const auto& modifiers = key->modifiers;
        if (key->keycode == press.detail &&
            std::ranges::find(modifiers, static_cast<std::uint16_t>(press.state & 0xffU)) != modifiers.end()) {
            const auto pressed = key->pressed;
            pressed();
        }
    }
}

void X11HotKeys::tellRepeatsApart() {
    // A key that is held repeats as presses without releases in between (XKB protocol, "Detectable Autorepeat").
    xcb_discard_reply(connection_.raw(),
                      xcb_xkb_per_client_flags(connection_.raw(), XCB_XKB_ID_USE_CORE_KBD,
                                               XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                                               XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0)
                          .sequence);
    connection_.flush();
}

} // namespace quillane
