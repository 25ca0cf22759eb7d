// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/settings/BrandPalette.hpp"

#include <QImage>
#include <QPixmap>
#include <QWidget>

#include <algorithm>
#include <map>

namespace quillane::fakes {

/// The contrast of a control's text with its background as drawn: of the most frequent colour, and of the one that
/// differs most from it.
[[nodiscard]] inline double textContrast(QWidget& control) {
    constexpr int border = 4;
    const auto image = control.window()->grab().toImage();
    const auto scale = image.devicePixelRatio();
    const QRect inside(control.mapTo(control.window(), QPoint(border, border)),
                       control.size() - QSize(2 * border, 2 * border));
    std::map<QRgb, int> counts;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            ++counts[image.pixel(static_cast<int>(x * scale), static_cast<int>(y * scale))];
        }
    }
    const auto color = [](QRgb value) {
        return core::Color{static_cast<std::uint8_t>(qRed(value)), static_cast<std::uint8_t>(qGreen(value)),
                           static_cast<std::uint8_t>(qBlue(value))};
    };
    const auto background = std::max_element(counts.begin(), counts.end(), [](const auto& first, const auto& second) {
        return first.second < second.second;
    });
    double contrast = 1;
    for (const auto& [value, count] : counts) {
        contrast = std::max(contrast, core::contrastRatio(color(value), color(background->first)));
    }
    return contrast;
}

} // namespace quillane::fakes
