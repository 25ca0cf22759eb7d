// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "app/TintedSymbol.hpp"

#include <QImage>
#include <QPixmap>

#include <array>

namespace quillane {

namespace {

constexpr std::array iconSizes{16, 20, 24, 32, 48, 64, 96}; // pixels; the larger ones for dense screens

QPixmap tinted(const TemplateImage& image, const QColor& color) {
    QImage canvas(image.width, image.height, QImage::Format_ARGB32);
    auto covered = image.coverage.begin();
    for (int y = 0; y < image.height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(canvas.scanLine(y));
        for (int x = 0; x < image.width; ++x) {
            line[x] =
                qRgba(color.red(), color.green(), color.blue(), std::to_integer<int>(*covered++) * color.alpha() / 255);
        }
    }
    return QPixmap::fromImage(canvas);
}

} // namespace

QIcon tintedSymbol(const SystemSymbols& symbols, const std::string& name, const QColor& color) {
    QIcon icon;
    for (const int size : iconSizes) {
        if (const auto image = symbols.image(name, size)) {
            icon.addPixmap(tinted(*image, color));
        }
    }
    return icon;
}

QIcon SymbolIcons::icon(const std::string& name, const QColor& color) {
    const auto [place, isNew] = drawn_.try_emplace({name, color.rgba()});
    if (isNew) {
        place->second = tintedSymbol(symbols_, name, color);
    }
    return place->second;
}

} // namespace quillane
