// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/KeyboardLayout.hpp"

#include "core/keyboard/LamAlef.hpp"

#include <algorithm>
#include <array>

namespace quillane::core {

namespace {

// Carbon HIToolbox, Events.h: up to the grave accent all keys but Return and Tab type text, then those of JIS
// keyboards.
constexpr KeyCode returnKey = 36;
constexpr KeyCode tabKey = 48;
constexpr KeyCode lastAnsiKey = 50;
constexpr KeyCode yenKey = 93;
constexpr KeyCode underscoreKey = 94;

constexpr auto keys = [] {
    std::array<KeyCode, lastAnsiKey + 1> codes{};
    std::size_t count = 0;
    for (KeyCode code = 0; code <= lastAnsiKey; ++code) {
        if (code != returnKey && code != tabKey) {
            codes[count++] = code;
        }
    }
    codes[count++] = yenKey;
    codes[count++] = underscoreKey;
    return codes;
}();
static_assert(keys.back() == underscoreKey);

/// An isolated form as its letters.
std::u32string inLetters(std::u32string text) {
    const auto found = std::ranges::find_if(
        lamAlefs, [&](const LamAlef& lamAlef) { return text == std::u32string_view(&lamAlef.isolatedForm, 1); });
    return found == lamAlefs.end() ? std::move(text) : std::u32string(found->letters);
}

} // namespace

KeyboardLayout
KeyboardLayout::read(const std::function<Output(const KeyStroke&)>& output,
                     const std::function<std::u32string(const KeyStroke& dead, const KeyStroke& next)>& composition) {
    KeyboardLayout layout;
    for (const auto key : keys) {
        for (const bool capsLock : {false, true}) {
            for (const bool option : {false, true}) {
                for (const bool shift : {false, true}) {
                    const KeyStroke stroke{.keyCode = key, .shift = shift, .option = option, .capsLock = capsLock};
                    if (auto typed = output(stroke); !typed.text.empty()) {
                        layout.outputs.emplace(stroke, Output{inLetters(std::move(typed.text)), typed.isDead});
                    }
                }
            }
        }
    }
    for (const auto& [dead, accent] : layout.outputs) {
        for (const auto& [next, ignored] : layout.outputs) {
            if (accent.isDead && next.capsLock == dead.capsLock) {
                if (auto composed = composition(dead, next); !composed.empty()) {
                    layout.compositions.emplace(std::pair(dead, next), std::move(composed));
                }
            }
        }
    }
    return layout;
}

std::span<const KeyCode> typingKeys() {
    return keys;
}

} // namespace quillane::core
