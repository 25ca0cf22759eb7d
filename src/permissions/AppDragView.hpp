// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QUrl>
#include <QWidget>

#include <functional>
#include <memory>

class QDrag;
class QMimeData;

namespace quillane {

/// The application's icon, which can be dragged into a list of applications.
class AppDragView : public QWidget {
    Q_OBJECT

public:
    AppDragView(QUrl application, QIcon icon, QWidget* parent = nullptr);

    /// The data of a drag: the application's URL.
    [[nodiscard]] std::unique_ptr<QMimeData> item() const;

    [[nodiscard]] QSize sizeHint() const override;

    /// Follows the pointer until it is dropped.
    std::function<void(QDrag& drag)> run;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    QUrl application_;
    QIcon icon_;
    QPoint pressed_;
};

} // namespace quillane
