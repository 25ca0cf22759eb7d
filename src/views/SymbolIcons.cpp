// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "views/SymbolIcons.hpp"

#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPixmap>

#include <algorithm>
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

/// Draws a symbol in any size, once for each.
class SymbolEngine final : public QIconEngine {
public:
    SymbolEngine(const SystemSymbols& symbols, std::string name, const QColor& color)
        : symbols_(symbols), name_(std::move(name)), color_(color) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const double scale = painter->device() != nullptr ? painter->device()->devicePixelRatioF() : 1;
        painter->drawPixmap(rect, pixmap(rect.size() * scale, mode, state));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        const int side = std::min(size.width(), size.height());
        const bool faded = mode == QIcon::Disabled;
        const auto [place, isNew] = drawn_.try_emplace({side, faded});
        if (isNew) {
            auto color = color_;
            color.setAlphaF(faded ? color.alphaF() * fading : color.alphaF());
            if (const auto image = side > 0 ? symbols_.image(name_, side) : std::nullopt) {
                place->second = tinted(*image, color);
            }
        }
        return place->second;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new SymbolEngine(*this); }

    [[nodiscard]] bool isNull() override { return pixmap({iconSizes.front(), iconSizes.front()}, {}, {}).isNull(); }

private:
    static constexpr float fading = 0.4F;

    const SystemSymbols& symbols_;
    std::string name_;
    QColor color_;
    std::map<std::pair<int, bool>, QPixmap> drawn_;
};

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
        place->second = QIcon(new SymbolEngine(symbols_, name, color)); // the icon owns it
    }
    return place->second;
}

} // namespace quillane
