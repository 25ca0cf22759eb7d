// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/clipboard/AreaSelection.hpp"

#include <QImage>

#include <cstddef>
#include <vector>

class QScreen;

namespace quillane {

/// The picture of one screen at one moment, in device pixels.
struct ScreenPicture {
    QScreen* screen = nullptr;
    core::PixelRect area; ///< of the screen, among the others
    QImage image;         ///< of the same size

    /// Takes one of every screen. Waits for the X server.
    [[nodiscard]] static std::vector<ScreenPicture> ofAllScreens();
};

/// The part of the pictures within an area; black where there is no screen.
[[nodiscard]] QImage cutOut(const std::vector<ScreenPicture>& pictures, const core::PixelRect& area);

/// The picture as a PNG file; empty when there is not enough memory.
[[nodiscard]] std::vector<std::byte> pngOf(const QImage& image);

} // namespace quillane
