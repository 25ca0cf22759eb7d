// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/shell/LineArtSymbols.hpp"

#include <QColor>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <array>

// Resources of a static library are not registered automatically, and the macro must not be inside a namespace.
static void registerResources() {
    Q_INIT_RESOURCE(symbols);
}

namespace quillane {

namespace {

constexpr std::array iconSizes{16, 20, 24, 32, 48};
constexpr std::array applicationIconSizes{16, 24, 32, 48, 64, 128};

/// The path of a symbol's drawing; empty without one.
QString pathOf(std::string_view name) {
    const auto path = QStringLiteral(":/symbols/%1.svg").arg(QString::fromUtf8(name.data(), qsizetype(name.size())));
    return name.find('/') == std::string_view::npos && QFile::exists(path) ? path : QString();
}

QPixmap render(QSvgRenderer& renderer, int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    return pixmap;
}

} // namespace

QIcon symbolIcon(const std::string& name, const QColor& color) {
    registerResources();
    const QString path = pathOf(name);
    if (path.isEmpty()) {
        return {};
    }
    QSvgRenderer renderer(path);
    QIcon icon;
    for (const int size : iconSizes) {
        QPixmap pixmap = render(renderer, size);
        QPainter painter(&pixmap);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(pixmap.rect(), color);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

std::optional<TemplateImage> LineArtSymbols::image(std::string_view name, int pixels) const {
    registerResources();
    const QString path = pathOf(name);
    if (path.isEmpty() || pixels < 1) {
        return std::nullopt;
    }
    QSvgRenderer renderer(path);
    QImage canvas(pixels, pixels, QImage::Format_Alpha8);
    canvas.fill(0);
    QPainter painter(&canvas);
    renderer.render(&painter);
    painter.end();
    TemplateImage result{pixels, pixels, 1, {}};
    for (int y = 0; y < pixels; ++y) {
        const auto* line = reinterpret_cast<const std::byte*>(canvas.constScanLine(y));
        result.coverage.insert(result.coverage.end(), line, line + pixels);
    }
    return result;
}

QIcon applicationIcon() {
    registerResources();
    QSvgRenderer renderer(QStringLiteral(":/artwork/application.svg"));
    QIcon icon;
    for (const int size : applicationIconSizes) {
        icon.addPixmap(render(renderer, size));
    }
    return icon;
}

} // namespace quillane
