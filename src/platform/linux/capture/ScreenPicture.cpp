// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/capture/ScreenPicture.hpp"

#include <QBuffer>
#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QScreen>

namespace quillane {

std::vector<ScreenPicture> ScreenPicture::ofAllScreens() {
    std::vector<ScreenPicture> pictures;
    for (auto* screen : QGuiApplication::screens()) {
        auto image = screen->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
        image.setDevicePixelRatio(1);
        if (!image.isNull()) {
            // Qt scales the size of a screen but leaves its position among the others in device pixels.
            const auto place = screen->geometry().topLeft();
            pictures.push_back({screen, {place.x(), place.y(), image.width(), image.height()}, image});
        }
    }
    return pictures;
}

QImage cutOut(const std::vector<ScreenPicture>& pictures, const core::PixelRect& area) {
    QImage cut(area.width, area.height, QImage::Format_RGB32);
    cut.fill(Qt::black);
    QPainter painter(&cut);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    for (const auto& picture : pictures) {
        if (const auto shared = core::intersection(picture.area, area); !shared.isEmpty()) {
            painter.drawImage(QPoint(shared.x - area.x, shared.y - area.y), picture.image,
                              QRect(shared.x - picture.area.x, shared.y - picture.area.y, shared.width, shared.height));
        }
    }
    return cut;
}

std::vector<std::byte> pngOf(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "PNG")) {
        return {};
    }
    const auto* begin = reinterpret_cast<const std::byte*>(bytes.constData());
    return {begin, begin + bytes.size()};
}

} // namespace quillane
