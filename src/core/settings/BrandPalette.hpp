// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace quillane::core {

/// A colour in sRGB, opaque.
struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    bool operator==(const Color&) const = default;
};

/// The contrast of two colours, from 1 to 21 (WCAG 2.1, "contrast ratio").
[[nodiscard]] double contrastRatio(Color first, Color second);

enum class Appearance { light, dark };

/// The colours of the program's windows.
namespace brandPalette {

inline constexpr Color charcoal{36, 38, 43};
inline constexpr Color white{246, 246, 248};
inline constexpr Color amberInk{185, 90, 33};
inline constexpr Color amberLight{255, 224, 175};

/// Text and symbols.
[[nodiscard]] constexpr Color primary(Appearance appearance) {
    return appearance == Appearance::dark ? white : charcoal;
}

/// Switched on, selected, or in need of attention.
[[nodiscard]] constexpr Color amber(Appearance appearance) {
    return appearance == Appearance::dark ? amberLight : amberInk;
}

/// The surfaces and shades that accompany the four colours. Text is `primary` or `secondary` on `window`, `card` or
/// `field`, and `onAmber` on amber.
struct Shades {
    Color window;
    Color card;
    Color field;     ///< text fields, buttons and key caps
    Color hairline;  ///< borders of cards and between rows
    Color outline;   ///< borders of controls, on a card
    Color secondary; ///< explanations
    Color onAmber;
    Color selection; ///< behind the selected page
    Color off;       ///< a switch that is off
    Color warning;   ///< text of a warning
    Color good;      ///< the sign that something is in order
};

[[nodiscard]] const Shades& shades(Appearance appearance);

/// A piece of the wordmark.
struct WordmarkRun {
    std::string_view text;
    Color color;
};

/// The product's name in its colours; the compact one is for places with room for three letters.
[[nodiscard]] std::vector<WordmarkRun> wordmark(Appearance appearance, bool compact);

} // namespace brandPalette

} // namespace quillane::core
