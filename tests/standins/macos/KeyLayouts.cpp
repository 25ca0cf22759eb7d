// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/KeyLayouts.hpp"

#include "standins/macos/Object.hpp"

#include <Carbon/HotKeys.h>

#include <algorithm>
#include <iterator>

namespace quillane::standin {

namespace {

/// The state after a dead key is its place among the strokes, from 1.
UInt32 stateAfter(const core::KeyboardLayout& keys, const core::KeyStroke& dead) {
    return static_cast<UInt32>(std::distance(keys.outputs.begin(), keys.outputs.find(dead))) + 1;
}

/// What the key types after the dead key of the state; changes the state.
std::u32string type(const core::KeyboardLayout& keys, const core::KeyStroke& stroke, UInt32& state) {
    std::u32string typed;
    if (state != 0) {
        const auto& [dead, accent] = *std::next(keys.outputs.begin(), state - 1);
        state = 0;
        if (const auto composed = keys.compositions.find({dead, stroke}); composed != keys.compositions.end()) {
            return composed->second;
        }
        typed = accent.text;
    }
    const auto output = keys.outputs.find(stroke);
    if (output == keys.outputs.end()) {
        return typed;
    }
    if (output->second.isDead) {
        state = stateAfter(keys, stroke);
        return typed;
    }
    return typed + output->second.text;
}

} // namespace

Value layoutData(const core::KeyboardLayout& keys) {
    const UCKeyboardLayout layout{&keys};
    return Value::adopt(CFDataCreate(nullptr, reinterpret_cast<const UInt8*>(&layout), sizeof layout));
}

} // namespace quillane::standin

using namespace quillane;

extern "C" {

UInt8 LMGetKbdType() {
    return 106; // an ANSI keyboard
}

OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 keyCode, UInt16 action, UInt32 modifiers,
                        UInt32 keyboardType, UInt32 options, UInt32* deadKeyState, UniCharCount maximumLength,
                        UniCharCount* length, UniChar* text) {
    if (action != kUCKeyActionDown || keyboardType != LMGetKbdType() || options != 0 ||
        (modifiers & ~((shiftKey | optionKey | alphaLock) >> 8U)) != 0) {
        standin::refuse("a key press that nobody makes");
    }
    const core::KeyStroke stroke{.keyCode = keyCode,
                                 .shift = (modifiers & shiftKey >> 8U) != 0,
                                 .option = (modifiers & optionKey >> 8U) != 0,
                                 .capsLock = (modifiers & alphaLock >> 8U) != 0};
    std::u16string units;
    for (const auto c : standin::type(*layout->keys, stroke, *deadKeyState)) {
        if (c > 0xffff) {
            units += static_cast<char16_t>(0xd800 + ((c - 0x10000) >> 10U));
            units += static_cast<char16_t>(0xdc00 + ((c - 0x10000) & 0x3ffU));
        } else {
            units += static_cast<char16_t>(c);
        }
    }
    if (units.size() > maximumLength) {
        standin::refuse("too little room for what a key types");
    }
    *length = units.size();
    std::ranges::copy(units, text);
    return noErr;
}
}
