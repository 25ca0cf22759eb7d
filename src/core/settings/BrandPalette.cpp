// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/settings/BrandPalette.hpp"

#include <algorithm>
#include <cmath>

namespace quillane::core {

namespace {

/// WCAG 2.1, "relative luminance".
double luminance(Color color) {
    const auto linear = [](std::uint8_t value) {
        const double part = value / 255.0;
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

} // namespace

double contrastRatio(Color first, Color second) {
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

namespace brandPalette {

const Shades& shades(Appearance appearance) {
    static constexpr Shades light{.window = {236, 236, 239},
                                  .card = {250, 250, 251},
                                  .field = {255, 255, 255},
                                  .hairline = {223, 223, 227},
                                  .outline = {136, 138, 145},
                                  .secondary = {90, 92, 100},
                                  .onAmber = {255, 255, 255},
                                  .selection = {218, 218, 223},
                                  .off = {136, 138, 145},
                                  .warning = {166, 60, 10},
                                  .good = {28, 122, 58}};
    static constexpr Shades dark{.window = {30, 31, 34},
                                 .card = {42, 43, 47},
                                 .field = {55, 56, 61},
                                 .hairline = {58, 59, 64},
                                 .outline = {126, 128, 136},
                                 .secondary = {174, 176, 184},
                                 .onAmber = {36, 38, 43},
                                 .selection = {60, 61, 67},
                                 .off = {126, 128, 136},
                                 .warning = {255, 172, 130},
                                 .good = {120, 214, 148}};
    return appearance == Appearance::dark ? dark : light;
}

std::vector<WordmarkRun> wordmark(Appearance appearance, bool compact) {
    if (compact) {
        return {{"RTL", primary(appearance)}};
    }
    return {{"Quill", primary(appearance)}, {"ane", amber(appearance)}};
}

} // namespace brandPalette

} // namespace quillane::core
