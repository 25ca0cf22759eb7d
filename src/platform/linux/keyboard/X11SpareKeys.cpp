// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11SpareKeys.hpp"

#include "platform/linux/x11/X11Xkb.hpp"

#include <algorithm>
#include <string_view>

namespace quillane {

namespace {

/// Left free: other programs borrow key codes too, briefly.
constexpr std::size_t leftForOthers = 2;
constexpr std::uint32_t maximumListLength = 64; // in words

} // namespace

X11SpareKeys::X11SpareKeys(X11Connection& connection, X11Keyboard& keyboard)
    : connection_(connection),
      keyboard_(keyboard),
      readings_(keyboard.onCurrent([this] { checkAgainstMap(); })),
      notices_(keyboard.onLayoutNotice([this] { repeatingReading_.request(); })),
      openings_(connection.onOpened([this] { repeatingReading_.request(); })) {
    constexpr std::array<std::string_view, 1> names{"_QUILLANE_SPARE_KEYS"};
    listAtom_ = connection.internAtoms(names).front();
    readLeftovers();
    repeatingReading_.request();
}

X11SpareKeys::~X11SpareKeys() {
    giveBack();
}

bool X11SpareKeys::isSpare(xcb_keycode_t keycode) const {
    return std::ranges::find(spares_, keycode, &Spare::keycode) != spares_.end();
}

std::optional<xcb_keycode_t> X11SpareKeys::keycodeFor(std::uint32_t keysym) {
    auto spare = std::ranges::find(spares_, keysym, &Spare::keysym);
    if (spare == spares_.end()) {
        if (const auto keycode = borrowable()) {
            spare = spares_.insert(spares_.end(), Spare{*keycode, keysym});
            publish(); // first, so that the list always contains at least the codes in use
        } else {
            spare = std::ranges::min_element(spares_, {}, &Spare::lastUse);
            if (spare == spares_.end() || Clock::now() < spare->lastUse + minimumStay) {
                return std::nullopt;
            }
            spare->keysym = keysym;
        }
        assign(spare->keycode, keysym);
    }
    spare->lastUse = Clock::time_point::max() - minimumStay;
    return spare->keycode;
}

void X11SpareKeys::release(xcb_keycode_t keycode) {
    const auto spare = std::ranges::find(spares_, keycode, &Spare::keycode);
    if (spare != spares_.end()) {
        spare->lastUse = Clock::now();
    }
}

std::optional<xcb_keycode_t> X11SpareKeys::borrowable() const {
    const auto& keymap = keyboard_.keymap();
    std::size_t others = 0;
    std::optional<xcb_keycode_t> found;
    for (unsigned code = keymap.firstKeycode(); code <= keymap.lastKeycode(); ++code) {
        const auto keycode = static_cast<xcb_keycode_t>(code);
        if (keymap.isFree(keycode) && !isSpare(keycode)) {
            ++others;
            found = keycode; // the last one: other programs search from the first
        }
    }
    return others > leftForOthers ? found : std::nullopt;
}

void X11SpareKeys::assign(xcb_keycode_t keycode, std::uint32_t keysym) {
    // One group, which every other group wraps to, of the type that uses Shift and Lock and so consumes both.
    struct {
        xcb_xkb_key_sym_map_t map;
        std::array<std::uint32_t, 2> keysyms;
    } symbols{{{X11Keymap::alphabeticType, 0, 0, 0}, 1, 2, 2}, {keysym, keysym}};

    if (keysym == 0) {
        symbols.map = {};
    }
    if (repeating_) {
        auto repeating = *repeating_;
        for (const auto& spare : spares_) {
            repeating[spare.keycode / 8] &= static_cast<std::uint8_t>(~(1U << spare.keycode % 8));
        }
        setRepeating(repeating);
    }
    const auto* setup = xcb_get_setup(connection_.raw());
    xcb_xkb_set_map(connection_.raw(), XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_MAP_PART_KEY_SYMS, 0, setup->min_keycode,
                    setup->max_keycode, 0, 0, keycode, 1, symbols.map.nSyms, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                    0, 0, &symbols);
}

void X11SpareKeys::setRepeating(const KeyBits& repeating) {
    // A spare key must not repeat, or the server forgets that the key in its place does.
    xcb_xkb_set_controls(connection_.raw(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                         XCB_XKB_CONTROL_PER_KEY_REPEAT, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, repeating.data());
}

void X11SpareKeys::giveBack() {
    if (spares_.empty()) {
        return;
    }
    for (const auto& spare : std::exchange(spares_, {})) {
        assign(spare.keycode, 0);
    }
    xcb_delete_property(connection_.raw(), connection_.root(), listAtom_);
    connection_.flush();
}

void X11SpareKeys::publish() {
    std::vector<std::uint8_t> keycodes;
    for (const auto& spare : spares_) {
        keycodes.push_back(spare.keycode);
    }
    xcb_change_property(connection_.raw(), XCB_PROP_MODE_REPLACE, connection_.root(), listAtom_, XCB_ATOM_CARDINAL, 8,
                        static_cast<std::uint32_t>(keycodes.size()), keycodes.data());
}

void X11SpareKeys::sendRepeating() {
    const auto cookie = xcb_xkb_get_controls(connection_.raw(), XCB_XKB_ID_USE_CORE_KBD);
    connection_.await<xcb_xkb_get_controls_reply_t>(
        cookie, lifetime_, [this](const xcb_xkb_get_controls_reply_t* reply) {
            if (reply != nullptr) {
                repeating_.emplace();
                std::ranges::copy(reply->perKeyRepeat, repeating_->begin());
                for (const auto& spare :
                     spares_) { // no key of the keyboard has this code, so no user has turned it off
                    (*repeating_)[spare.keycode / 8] |= static_cast<std::uint8_t>(1U << spare.keycode % 8);
                }
            }
            repeatingReading_.finish();
        });
    connection_.flush();
}

void X11SpareKeys::readLeftovers() {
    const auto cookie =
        xcb_get_property(connection_.raw(), 0, connection_.root(), listAtom_, XCB_ATOM_CARDINAL, 0, maximumListLength);
    connection_.await<xcb_get_property_reply_t>(cookie, lifetime_, [this](const xcb_get_property_reply_t* reply) {
        if (reply != nullptr && reply->format == 8) {
            takeOver(*reply);
        }
    });
    connection_.flush();
}

void X11SpareKeys::takeOver(const xcb_get_property_reply_t& list) {
    const auto* keycodes = static_cast<const xcb_keycode_t*>(xcb_get_property_value(&list));
    for (int i = 0; i < xcb_get_property_value_length(&list); ++i) {
        // Only keys that look as `assign` makes them: the map may have been replaced since the list was made.
        const auto keysym = keyboard_.keymap().onlyKeysym(keycodes[i]);
        if (keysym != 0 && !isSpare(keycodes[i])) {
            spares_.push_back({keycodes[i], keysym});
        }
    }
}

void X11SpareKeys::checkAgainstMap() {
    const auto erased = std::erase_if(
        spares_, [this](const Spare& spare) { return keyboard_.keymap().onlyKeysym(spare.keycode) != spare.keysym; });
    if (erased > 0) {
        publish();
        connection_.flush();
    }
}

} // namespace quillane
