// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/LatinKeyPlaces.hpp"

#include <QChar>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace quillane {

namespace {

struct Row {
    std::uint32_t first;
    std::string_view characters;
};

constexpr std::array rows{Row{24, "qwertyuiop[]"}, Row{38, "asdfghjkl;'"}, Row{52, "zxcvbnm,./"}};

/// The letter keys that have a sign in the Hebrew layout (SI 1452). No Latin layout has these signs there.
constexpr std::array hebrewSigns{std::pair{std::uint32_t{24}, U'/'}, std::pair{std::uint32_t{25}, U'\''}};

bool isLetterOutsideLatin(char32_t symbol) {
    return symbol <= 0x10ffff && QChar::isLetter(symbol) && QChar::script(symbol) != QChar::Script_Latin;
}

} // namespace

std::optional<char> latinKeyInPlace(std::uint32_t keycode) {
    for (const auto& [first, characters] : rows) {
        if (keycode >= first && keycode - first < characters.size()) {
            return characters[keycode - first];
        }
    }
    return std::nullopt;
}

std::optional<char> latinKeyBySymbol(std::uint32_t keycode, char32_t symbol) {
    const bool isHebrewSign = std::ranges::find(hebrewSigns, std::pair{keycode, symbol}) != hebrewSigns.end();
    return isHebrewSign || isLetterOutsideLatin(symbol) ? latinKeyInPlace(keycode) : std::nullopt;
}

} // namespace quillane
