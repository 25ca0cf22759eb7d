// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11Keymap.hpp"

#include <algorithm>

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

namespace quillane {

namespace {

constexpr std::uint8_t clampGroups = 0x40;
constexpr std::uint8_t redirectGroups = 0x80;

} // namespace

X11Keymap::X11Keymap(const xcb_xkb_get_map_reply_t& reply) : first_(reply.minKeyCode), last_(reply.maxKeyCode) {
    xcb_xkb_get_map_map_t map{};
    xcb_xkb_get_map_map_unpack(xcb_xkb_get_map_map(&reply), reply.nTypes, reply.nKeySyms, reply.nKeyActions,
                               reply.totalActions, reply.totalKeyBehaviors, reply.virtualMods, reply.totalKeyExplicit,
                               reply.totalModMapKeys, reply.totalVModMapKeys, reply.present, &map);

    for (auto it = xcb_xkb_get_map_map_types_rtrn_iterator(&reply, &map); it.rem > 0; xcb_xkb_key_type_next(&it)) {
        auto& type = types_.emplace_back();
        type.modifierMask = it.data->mods_mask;
        for (auto entry = xcb_xkb_key_type_map_iterator(it.data); entry.rem > 0; xcb_xkb_kt_map_entry_next(&entry)) {
            if (entry.data->active != 0) {
                type.levels.push_back({entry.data->mods_mask, entry.data->level});
            }
        }
    }

    std::size_t keycode = reply.firstKeySym;
    for (auto it = xcb_xkb_get_map_map_syms_rtrn_iterator(&reply, &map); it.rem > 0 && keycode < keys_.size();
         xcb_xkb_key_sym_map_next(&it), ++keycode) {
        auto& key = keys_[keycode];
        std::copy_n(it.data->kt_index, key.types.size(), key.types.begin());
        key.groupInfo = it.data->groupInfo;
        key.width = it.data->width;
        const auto* keysyms = xcb_xkb_key_sym_map_syms(it.data);
        key.keysyms.assign(keysyms, keysyms + it.data->nSyms);
        groupCount_ = std::max(groupCount_, groups(key));
        const auto named = std::ranges::find_if(key.keysyms, [](auto keysym) { return keysym != 0; });
        if (named != key.keysyms.end()) {
            modifiers_[keycode] = x11KeyCodes::modifier(*named, static_cast<xcb_keycode_t>(keycode));
        }
    }

    for (auto it = xcb_xkb_get_map_map_modmap_rtrn_iterator(&reply, &map); it.rem > 0; xcb_xkb_key_mod_map_next(&it)) {
        auto& key = keys_[it.data->keycode];
        key.modifierMap = it.data->mods;
        if (std::ranges::find(key.keysyms, std::uint32_t{XKB_KEY_Num_Lock}) != key.keysyms.end()) {
            numLock_ |= it.data->mods;
        }
        if (std::ranges::find(key.keysyms, std::uint32_t{XKB_KEY_ISO_Level3_Shift}) != key.keysyms.end()) {
            thirdLevel_ |= it.data->mods;
        }
    }
}

bool X11Keymap::isFree(xcb_keycode_t keycode) const {
    const auto& key = keys_[keycode];
    return keycode >= first_ && keycode <= last_ && key.modifierMap == 0 &&
           std::ranges::all_of(key.keysyms, [](auto keysym) { return keysym == 0; });
}

unsigned X11Keymap::effectiveGroup(const Key& key, unsigned group) {
    const auto count = groups(key);
    if (group < count) {
        return group;
    }
    if ((key.groupInfo & redirectGroups) != 0) {
        const auto target = (key.groupInfo >> 4) & 3U;
        return target < count ? target : 0;
    }
    return (key.groupInfo & clampGroups) != 0 ? count - 1 : group % count;
}

const X11Keymap::Type* X11Keymap::type(const Key& key, unsigned group) const {
    if (groups(key) == 0) {
        return nullptr;
    }
    const auto index = key.types[effectiveGroup(key, group)];
    return index < types_.size() ? &types_[index] : nullptr;
}

bool X11Keymap::dependsOn(xcb_keycode_t keycode, unsigned group, std::uint8_t modifierBits) const {
    const auto* chosen = type(keys_[keycode], group);
    return chosen != nullptr && (chosen->modifierMask & modifierBits) != 0;
}

std::uint32_t X11Keymap::keysym(xcb_keycode_t keycode, unsigned group, std::uint8_t modifierBits) const {
    const auto& key = keys_[keycode];
    const auto* chosen = type(key, group);
    if (chosen == nullptr) {
        return 0;
    }
    const auto found = std::ranges::find(chosen->levels, modifierBits & chosen->modifierMask, &Level::modifierBits);
    const std::size_t level = found != chosen->levels.end() ? found->level : 0;
    const auto index = effectiveGroup(key, group) * key.width + level;
    if (level >= key.width || index >= key.keysyms.size()) {
        return 0;
    }
    const bool capitalizes = (modifierBits & XCB_MOD_MASK_LOCK) != 0 && (chosen->modifierMask & XCB_MOD_MASK_LOCK) == 0;
    return capitalizes ? xkb_keysym_to_upper(key.keysyms[index]) : key.keysyms[index];
}

std::uint32_t X11Keymap::onlyKeysym(xcb_keycode_t keycode) const {
    const auto& key = keys_[keycode];
    const bool oneOfAKind = groups(key) == 1 && key.types[0] == alphabeticType && !key.keysyms.empty() &&
                            std::ranges::all_of(key.keysyms, [&](auto keysym) { return keysym == key.keysyms[0]; });
    return oneOfAKind ? key.keysyms[0] : 0;
}

} // namespace quillane
