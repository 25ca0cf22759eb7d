// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/ShiftEnglish.hpp"

#include <array>
#include <cstddef>
#include <string_view>

namespace quillane::core::shiftEnglish {

namespace {

// By key code (Carbon HIToolbox, Events.h); a blank means not a letter. Key 10 is the extra key of ISO keyboards.
constexpr std::u16string_view letters = u"asdfhgzxcv bqweryt             ou ip lj k    nm";

constexpr std::size_t letterCount = [] {
    std::size_t count = 0;
    for (const auto letter : letters) {
        count += letter != u' ' ? 1 : 0;
    }
    return count;
}();
static_assert(letterCount == 26);

constexpr auto codes = [] {
    std::array<KeyCode, letterCount> result{};
    std::size_t count = 0;
    for (std::size_t code = 0; code < letters.size(); ++code) {
        if (letters[code] != u' ') {
            result[count++] = static_cast<KeyCode>(code);
        }
    }
    return result;
}();

} // namespace

std::optional<char16_t> character(KeyCode keyCode, const Conditions& conditions) {
    if (!conditions.shift || conditions.shortcutModifier || !conditions.rtlSource || !conditions.editable ||
        keyCode >= letters.size() || letters[keyCode] == u' ') {
        return std::nullopt;
    }
    return letters[keyCode];
}

std::span<const KeyCode> keyCodes() {
    return codes;
}

} // namespace quillane::core::shiftEnglish
