// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QIcon;
class QUrl;

namespace quillane {

class AppDragView;

/// The tile with the draggable icon, and the application's name below it.
class PermissionAppChip : public QWidget {
    Q_OBJECT

public:
    PermissionAppChip(const QUrl& application, const QIcon& icon, QWidget* parent = nullptr);

    [[nodiscard]] AppDragView& dragView() { return *icon_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    AppDragView* icon_;
};

} // namespace quillane
