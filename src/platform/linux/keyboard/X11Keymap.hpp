// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/keyboard/X11KeyCodes.hpp"
#include "platform/linux/x11/X11Xkb.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include <xcb/xcb.h>

namespace quillane {

/// The meaning of the keyboard's keys: a copy of the server's XKB map.
class X11Keymap {
public:
    /// The parts that a reply must have to be read.
    static constexpr std::uint16_t neededParts =
        XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;

    /// The type in every map (X Keyboard Extension protocol, "Canonical Key Types") that uses Shift and Lock.
    static constexpr std::uint8_t alphabeticType = 2;

    X11Keymap() = default;
    explicit X11Keymap(const xcb_xkb_get_map_reply_t& reply);

    /// The modifier that the key is, or nullptr.
    [[nodiscard]] const ModifierKey* modifier(xcb_keycode_t keycode) const { return modifiers_[keycode]; }

    /// The modifier bit (of the eight in event states) that the key sets; 0 for none.
    [[nodiscard]] std::uint8_t modifierBit(xcb_keycode_t keycode) const { return keys_[keycode].modifierMap; }

    /// The modifier bit of Num Lock.
    [[nodiscard]] std::uint8_t numLock() const { return numLock_; }

    /// The modifier bits of AltGr (the third level); 0 when the map has none.
    [[nodiscard]] std::uint8_t thirdLevel() const { return thirdLevel_; }

    /// The maximum number of groups of any key.
    [[nodiscard]] unsigned groupCount() const { return groupCount_; }

    /// True for a key code that no key uses.
    [[nodiscard]] bool isFree(xcb_keycode_t keycode) const;

    [[nodiscard]] xcb_keycode_t firstKeycode() const { return first_; }

    [[nodiscard]] xcb_keycode_t lastKeycode() const { return last_; }

    /// The key symbol that the key gives in this group (counted from 0) with these modifier bits; 0 for none.
    [[nodiscard]] std::uint32_t keysym(xcb_keycode_t keycode, unsigned group, std::uint8_t modifierBits) const;

    /// Whether any of the modifier bits has a part in which symbol the key gives in this group.
    [[nodiscard]] bool dependsOn(xcb_keycode_t keycode, unsigned group, std::uint8_t modifierBits) const;

    /// The only symbol of an alphabetic key that gives the same at each level, whatever the group; otherwise 0.
    [[nodiscard]] std::uint32_t onlyKeysym(xcb_keycode_t keycode) const;

private:
    struct Level {
        std::uint8_t modifierBits;
        std::uint8_t level;
    };

    struct Type {
        std::uint8_t modifierMask = 0;
        std::vector<Level> levels; ///< those other than level 0
    };

    struct Key {
        std::array<std::uint8_t, 4> types{};
        std::uint8_t groupInfo = 0;
        std::uint8_t width = 0;
        std::uint8_t modifierMap = 0;
        std::vector<std::uint32_t> keysyms;
    };

    /// At most as many as a key has types, whatever the map says.
    [[nodiscard]] static unsigned groups(const Key& key) {
        return std::min(key.groupInfo & 0x0fU, static_cast<unsigned>(key.types.size()));
    }

    [[nodiscard]] static unsigned effectiveGroup(const Key& key, unsigned group);

    /// The type of the key in this group; nullptr for a key without symbols.
    [[nodiscard]] const Type* type(const Key& key, unsigned group) const;

    std::vector<Type> types_;
    std::array<Key, 256> keys_;
    std::array<const ModifierKey*, 256> modifiers_{};
    std::uint8_t numLock_ = 0;
    std::uint8_t thirdLevel_ = 0;
    unsigned groupCount_ = 0;
    xcb_keycode_t first_ = 0;
    xcb_keycode_t last_ = 0;
};

} // namespace quillane
