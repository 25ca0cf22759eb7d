// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "permissions/PermissionAppChip.hpp"

#include "core/localization/Texts.hpp"
#include "permissions/AppDragView.hpp"
#include "views/Colors.hpp"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace quillane {

namespace {

constexpr double radius = 12;

} // namespace

PermissionAppChip::PermissionAppChip(const QUrl& application, const QIcon& icon, QWidget* parent)
    : QWidget(parent), icon_(new AppDragView(application, icon)) {
    const auto name = QString::fromUtf8(core::texts::quillane.key.data());
    icon_->setObjectName(QStringLiteral("chip"));
    icon_->setAccessibleName(name);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(18, 10, 18, 8);
    column->setSpacing(4);
    column->addWidget(icon_, 0, Qt::AlignHCenter);
    column->addWidget(new QLabel(name), 0, Qt::AlignHCenter);
}

void PermissionAppChip::paintEvent(QPaintEvent*) {
    const auto& shades = core::brandPalette::shades(currentAppearance());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(qColor(shades.outline), 1, Qt::DashLine)); // it can be taken out
    painter.setBrush(qColor(shades.field));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

} // namespace quillane
