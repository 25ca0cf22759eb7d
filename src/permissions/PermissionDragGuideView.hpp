// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"
#include "core/preferences/AppPreferences.hpp"
#include "permissions/PermissionController.hpp"
#include "permissions/PermissionDragGuide.hpp"
#include "platform/WindowTraits.hpp"

#include <QIcon>
#include <QWidget>

#include <functional>
#include <optional>
#include <string>
#include <vector>

class QLabel;
class QToolButton;

namespace quillane {

/// What the card needs, borrowed.
struct PermissionCardServices {
    PermissionController& permissions;
    core::AppPreferences& preferences;
    WindowTraits& windowTraits;
    std::function<QIcon(const std::string& name, const QColor& color)> symbol; ///< a null icon for unknown names
    QIcon applicationIcon;
};

/// The card: the application's icon to drag, what to do with it, and a control that closes the card.
class PermissionDragGuideView : public QWidget {
    Q_OBJECT

public:
    explicit PermissionDragGuideView(PermissionCardServices services);

    void setPermission(core::MacPermission permission);

signals:
    void closeRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void build();
    void redraw();
    void fitWords();

    PermissionCardServices services_;
    core::MacPermission permission_ = core::MacPermission::accessibility;
    QWidget* chip_;
    QLabel* heading_;
    QLabel* drag_;
    QLabel* next_;
    QToolButton* close_;
    std::vector<core::Subscription> subscriptions_;
};

/// The card's own window.
class PermissionDragGuideWindow : public QWidget, public PermissionGuidePanel {
    Q_OBJECT

public:
    explicit PermissionDragGuideWindow(const PermissionCardServices& services);

    void setPermission(core::MacPermission permission) override { view_->setPermission(permission); }

    void setFrame(const core::ScreenRect& frame) override;

    [[nodiscard]] bool isShown() const override { return isVisible(); }

    void orderFront() override;

    void orderOut() override { hide(); }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    PermissionDragGuideView* view_;
};

/// The current screens of the desktop, the main one first.
[[nodiscard]] std::vector<ScreenArea> currentScreens();

} // namespace quillane
