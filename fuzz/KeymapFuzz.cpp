// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
//
// Keyboard maps, which any client may load: types, symbols and modifiers with any numbers in them, as the X server
// hands them on (X Keyboard Extension, "Getting and Setting the Key Map"). Every question about every key has an
// answer.
#include "Require.hpp"

#include "platform/linux/keyboard/X11Keymap.hpp"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>
#include <string>

using namespace quillane;

namespace {

class Reply {
public:
    explicit Reply(FuzzedDataProvider& input) : input_(input) {
        head_.present = X11Keymap::neededParts;
        head_.minKeyCode = 8;
        head_.maxKeyCode = 255;
        addTypes();
        addSymbols();
        addModifiers();
    }

    [[nodiscard]] std::string bytes() {
        head_.length = static_cast<std::uint32_t>((sizeof head_ - 32 + body_.size()) / 4);
        std::string all(reinterpret_cast<const char*>(&head_), sizeof head_);
        return all + body_;
    }

private:
    template <typename Value>
    void add(const Value& value) {
        body_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }

    std::uint8_t byte() { return input_.ConsumeIntegral<std::uint8_t>(); }

    void addTypes() {
        head_.nTypes = head_.totalTypes = input_.ConsumeIntegralInRange<std::uint8_t>(0, 6);
        for (int i = 0; i < head_.nTypes; ++i) {
            xcb_xkb_key_type_t type{};
            type.mods_mask = byte();
            type.numLevels = byte();
            type.nMapEntries = input_.ConsumeIntegralInRange<std::uint8_t>(0, 8);
            type.hasPreserve = input_.ConsumeBool() ? 1 : 0;
            add(type);
            for (int entry = 0; entry < type.nMapEntries; ++entry) {
                xcb_xkb_kt_map_entry_t level{};
                level.active = byte();
                level.mods_mask = byte();
                level.level = byte();
                add(level);
            }
            if (type.hasPreserve != 0) {
                body_.append(type.nMapEntries * sizeof(xcb_xkb_mod_def_t), '\0');
            }
        }
    }

    void addSymbols() {
        head_.firstKeySym = input_.ConsumeIntegralInRange<std::uint8_t>(8, 255);
        head_.nKeySyms = input_.ConsumeIntegralInRange<std::uint8_t>(0, 20);
        for (int i = 0; i < head_.nKeySyms; ++i) {
            xcb_xkb_key_sym_map_t key{};
            for (auto& index : key.kt_index) {
                index = byte();
            }
            key.groupInfo = byte();
            key.width = byte();
            key.nSyms = input_.ConsumeIntegralInRange<std::uint16_t>(0, 16);
            add(key);
            for (int symbol = 0; symbol < key.nSyms; ++symbol) {
                add(input_.ConsumeIntegral<std::uint32_t>());
            }
            head_.totalSyms = static_cast<std::uint16_t>(head_.totalSyms + key.nSyms);
        }
    }

    void addModifiers() {
        head_.totalModMapKeys = input_.ConsumeIntegralInRange<std::uint8_t>(0, 12);
        for (int i = 0; i < head_.totalModMapKeys; ++i) {
            add(xcb_xkb_key_mod_map_t{byte(), byte()});
        }
        body_.resize((body_.size() + 3) / 4 * 4);
    }

    FuzzedDataProvider& input_;
    xcb_xkb_get_map_reply_t head_{};
    std::string body_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    const auto bytes = Reply(input).bytes();
    std::vector<std::uint32_t> words((bytes.size() + 3) / 4); // as far apart as a reply
    std::memcpy(words.data(), bytes.data(), bytes.size());
    const X11Keymap keymap(*reinterpret_cast<const xcb_xkb_get_map_reply_t*>(words.data()));
    for (unsigned keycode = 0; keycode < 256; ++keycode) {
        const auto code = static_cast<xcb_keycode_t>(keycode);
        for (unsigned group = 0; group < 5; ++group) {
            static_cast<void>(keymap.keysym(code, group, static_cast<std::uint8_t>(keycode * 7 + group)));
        }
        static_cast<void>(keymap.onlyKeysym(code));
        static_cast<void>(keymap.isFree(code));
    }
    return 0;
}
