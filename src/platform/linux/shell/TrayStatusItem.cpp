// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/shell/TrayStatusItem.hpp"

#include "platform/linux/shell/RowMenu.hpp"
#include "platform/linux/shell/TrayColors.hpp"

#include <QCursor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QImage>
#include <QSystemTrayIcon>

#include <cstring>
#include <utility>

namespace quillane {

namespace {

QPixmap tinted(const TemplateImage& image, QColor color) {
    QImage result(image.width, image.height, QImage::Format_ARGB32);
    auto coverage = image.coverage.begin();
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            color.setAlpha(std::to_integer<int>(*coverage++));
            result.setPixelColor(x, y, color);
        }
    }
    return QPixmap::fromImage(result);
}

/// Sends a notification without waiting for a reply (Desktop Notifications Specification 1.2, "Notify"). Calls
/// `failed`, while the context exists, when no service accepts it.
void notifyByBus(const QString& title, const QString& text, QObject* context, std::function<void()> failed) {
    auto message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    message.setArguments({QStringLiteral("Quillane"), 0U, QStringLiteral("com.quillane.app"), title, text,
                          QStringList(), QVariantMap(), -1});
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) { // a call would never be answered
        QMetaObject::invokeMethod(
            context,
            [failed = std::move(failed)] {
                if (failed) {
                    failed();
                }
            },
            Qt::QueuedConnection);
        return;
    }
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(message), context);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, context, [answer, failed = std::move(failed)] {
        answer->deleteLater();
        if (answer->isError() && failed) {
            failed();
        }
    });
}

} // namespace

class TrayStatusItem::Tray : public QObject {
public:
    Tray() {
        icon_.setContextMenu(&menu_);
        connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
            if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick) {
                popUp();
            }
        });
    }

    void setImage(const TemplateImage& image, const QString& label) {
        if (label != icon_.toolTip()) {
            icon_.setToolTip(label);
        }
        if (image != image_) {
            image_ = image;
            icon_.setIcon(QIcon(tinted(image, trayForegroundColor())));
            icon_.show();
        }
    }

    void setRows(std::vector<MenuRow> rows, LayoutDirection direction) { menu_.setRows(std::move(rows), direction); }

    void popUp() { menu_.popup(QCursor::pos()); }

    [[nodiscard]] bool isVisible() const { return icon_.isVisible() && QSystemTrayIcon::isSystemTrayAvailable(); }

    void showMessage(const QString& title, const QString& text) { icon_.showMessage(title, text); }

private:
    RowMenu menu_; // before the icon, which points to it
    QSystemTrayIcon icon_;
    TemplateImage image_;
};

TrayStatusItem::TrayStatusItem() : tray_(std::make_unique<Tray>()) {}

TrayStatusItem::~TrayStatusItem() = default;

void TrayStatusItem::setImage(const TemplateImage& image, const std::string& accessibilityLabel) {
    tray_->setImage(image, QString::fromStdString(accessibilityLabel));
}

void TrayStatusItem::setMenu(std::vector<MenuRow> rows, LayoutDirection direction) {
    tray_->setRows(std::move(rows), direction);
}

bool TrayStatusItem::isVisible() const {
    return tray_->isVisible();
}

void TrayStatusItem::popUpMenu() {
    tray_->popUp();
}

void TrayStatusItem::notify(const std::string& title, const std::string& text, std::function<void()> failed) {
    if (isVisible() && QSystemTrayIcon::supportsMessages()) {
        tray_->showMessage(QString::fromStdString(title), QString::fromStdString(text));
    } else {
        notifyByBus(QString::fromStdString(title), QString::fromStdString(text), tray_.get(), std::move(failed));
    }
}

} // namespace quillane
