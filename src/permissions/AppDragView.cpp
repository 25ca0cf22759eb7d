// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "permissions/AppDragView.hpp"

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>

#include <utility>

namespace quillane {

namespace {

constexpr int side = 64;

} // namespace

AppDragView::AppDragView(QUrl application, QIcon icon, QWidget* parent)
    : QWidget(parent),
      run([](QDrag& drag) { drag.exec(Qt::CopyAction | Qt::LinkAction, Qt::CopyAction); }),
      application_(std::move(application)),
      icon_(std::move(icon)) {
    setCursor(Qt::OpenHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

std::unique_ptr<QMimeData> AppDragView::item() const {
    auto carried = std::make_unique<QMimeData>();
    carried->setUrls({application_});
    return carried;
}

QSize AppDragView::sizeHint() const {
    return {side, side};
}

void AppDragView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    icon_.paint(&painter, rect());
}

void AppDragView::mousePressEvent(QMouseEvent* event) {
    pressed_ = event->position().toPoint();
}

void AppDragView::mouseMoveEvent(QMouseEvent* event) {
    const bool far = (event->position().toPoint() - pressed_).manhattanLength() >= QApplication::startDragDistance();
    if (!event->buttons().testFlag(Qt::LeftButton) || !far) {
        return;
    }
    auto* drag = new QDrag(this); // deleted by Qt when the drag is over
    drag->setMimeData(item().release());
    drag->setPixmap(icon_.pixmap(size()));
    drag->setHotSpot(pressed_);
    run(*drag);
}

} // namespace quillane
