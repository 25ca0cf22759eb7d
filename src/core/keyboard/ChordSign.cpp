// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/keyboard/ChordSign.hpp"

#include <algorithm>
#include <string>

namespace quillane::core {

namespace {

using namespace std::chrono_literals;

constexpr auto glance = 600ms;       // for a symbol
constexpr auto timeToNotice = 500ms; // that there is something to read
constexpr auto perCharacter = 60ms;  // 200 words of five letters in a minute
constexpr auto maximum = 8s;

std::ptrdiff_t characterCount(const std::string& text) {
    return std::ranges::count_if(text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; });
}

} // namespace

ChordSign chordSign(const ChordOutcome& outcome) {
    if (const auto* direction = std::get_if<WritingDirection>(&outcome.effect)) {
        const std::vector<std::string_view> symbols =
            *direction == WritingDirection::rightToLeft ? std::vector<std::string_view>{"arrow.left", "paragraphsign"}
                                                        : std::vector<std::string_view>{"paragraphsign", "arrow.right"};
        return {.symbols = symbols, .text = std::nullopt, .announcement = outcome.message};
    }
    if (const auto* source = std::get_if<SelectedSource>(&outcome.effect)) {
        return {.symbols = {"globe"}, .text = LocalizedText(source->name), .announcement = outcome.message};
    }
    return {.symbols = {"exclamationmark.circle"}, .text = outcome.message, .announcement = outcome.message};
}

std::chrono::milliseconds timeShown(const ChordSign& sign, AppLanguage language) {
    if (!sign.text) {
        return glance;
    }
    const std::chrono::milliseconds reading =
        timeToNotice + characterCount(sign.text->rendered(language)) * perCharacter;
    return std::clamp<std::chrono::milliseconds>(reading, glance, maximum);
}

ScreenRect chordSignPlacement::frame(const ScreenRect& place, const ScreenRect& screen, Size size) {
    const double left = screen.x + margin;
    const double top = screen.y + margin;
    const double right = std::max(left, screen.x + screen.width - margin - size.width);
    const double bottom = std::max(top, screen.y + screen.height - margin - size.height);
    const double below = place.y + place.height + margin;
    const double above = place.y - margin - size.height;
    return {std::clamp(place.x + place.width / 2 - size.width / 2, left, right),
            std::clamp(below <= bottom ? below : above, top, bottom), size.width, size.height};
}

} // namespace quillane::core
