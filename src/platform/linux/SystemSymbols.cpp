// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/SystemSymbols.hpp"

#include <QColor>
#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <array>

// Resources of a static library are not registered by themselves, and the macro must not stand in a namespace.
static void registerResources() {
    Q_INIT_RESOURCE(symbols);
}

namespace quillane {

namespace {

constexpr std::array iconSizes{16, 20, 24, 32, 48};

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
    const QString path = QStringLiteral(":/symbols/%1.svg").arg(QString::fromStdString(name));
    if (!QFile::exists(path)) {
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

QIcon applicationIcon() {
    registerResources();
    QSvgRenderer renderer(QStringLiteral(":/artwork/application.svg"));
    QIcon icon;
    for (const int size : iconSizes) {
        icon.addPixmap(render(renderer, size));
    }
    return icon;
}

} // namespace quillane
