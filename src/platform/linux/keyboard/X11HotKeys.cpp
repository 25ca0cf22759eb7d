// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/keyboard/X11HotKeys.hpp"

#include "platform/linux/keyboard/X11KeyCodes.hpp"
#include "platform/linux/x11/X11Xkb.hpp"

#include <algorithm>
#include <utility>

namespace quillane {

namespace {

constexpr core::EventFlags modifierFlags =
    core::flags::command | core::flags::option | core::flags::control | core::flags::shift;

/// Timestamps of the server are milliseconds that wrap around (X protocol, TIMESTAMP).
bool isEarlier(xcb_timestamp_t first, xcb_timestamp_t second) {
    return static_cast<std::int32_t>(first - second) < 0;
}

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
          requestDetectableRepeat();
          regrab();
      })),
      keymaps_(keyboard.onCurrent([this] { regrab(); })),
      releases_(keyboard.onKey([this](const X11RawEvent& event) {
          if (!event.isPress) { // the release goes to whoever has the keyboard by then
              released_[event.detail] = event.time;
          }
      })) {
    requestDetectableRepeat();
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
        return {}; // a modifier that this keyboard does not have
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
    const auto keycode = x11KeyCodes::keycode(key->key.keyCode);
    auto modifiers = modifiersFor(key->key.modifiers);
    if (!keycode || modifiers.empty() || connection_.isLost()) {
        return; // made once the map is known and the connection is open
    }
    key->keycode = *keycode;
    key->modifiers = std::move(modifiers);
    auto* c = connection_.raw();
    for (const auto bits : key->modifiers) {
        const auto cookie =
            xcb_grab_key(c, 0, connection_.root(), bits, key->keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        requests_[cookie.sequence] = key;
    }
    // Errors for keys of other programs arrive before this answer.
    const auto last = xcb_get_input_focus(c);
    connection_.await<xcb_get_input_focus_reply_t>(last, self_, [this, weak = std::weak_ptr(key)](const auto* reply) {
        const auto grabbed = weak.lock();
        std::erase_if(requests_, [&](const auto& request) { return request.second.lock() == grabbed; });
        if (!reply || !grabbed || !grabbed->isTaken || std::ranges::find(keys_, grabbed) == keys_.end()) {
            return;
        }
        ungrab(*grabbed); // otherwise it would work with some locks on and not with others
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

void X11HotKeys::regrab() {
    for (const auto& key : Keys(keys_)) { // a taken key may be dropped meanwhile
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
    default:
        return;
    }
}

void X11HotKeys::handlePress(const xcb_key_press_event_t& press) {
    // Releases the keyboard: while the key is down the server holds it for this connection, and an opening panel could
    // not grab it.
    xcb_ungrab_keyboard(connection_.raw(), XCB_CURRENT_TIME);
    connection_.flush();
    const bool repeats = press.detail == held_ && isEarlier(released_[held_], heldSince_);
    if (repeats) {
        return;
    }
    held_ = press.detail;
    heldSince_ = press.time;
    for (const auto& key : Keys(keys_)) {
        const auto& modifiers = key->modifiers;
        if (key->keycode == press.detail &&
            std::ranges::find(modifiers, static_cast<std::uint16_t>(press.state & 0xffU)) != modifiers.end()) {
            reportPress(key);
        }
    }
}

/// Reports the press once the server has executed the release of the keyboard.
void X11HotKeys::reportPress(const std::shared_ptr<Registered>& key) {
    connection_.await<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus(connection_.raw()), self_, [this, weak = std::weak_ptr(key)](const auto*) {
            const auto pressed = weak.lock();
            if (pressed && std::ranges::find(keys_, pressed) != keys_.end()) {
                const auto callback = pressed->pressed;
                callback();
            }
        });
    connection_.flush();
}

void X11HotKeys::requestDetectableRepeat() {
    // A held key repeats as presses without releases in between (XKB protocol, "Detectable Autorepeat").
    xcb_discard_reply(connection_.raw(),
                      xcb_xkb_per_client_flags(connection_.raw(), XCB_XKB_ID_USE_CORE_KBD,
                                               XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                                               XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0)
                          .sequence);
    connection_.flush();
}

} // namespace quillane
