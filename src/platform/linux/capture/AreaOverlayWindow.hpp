// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"
#include "platform/linux/capture/AreaOverlay.hpp"

#include <QRegion>
#include <QWidget>

namespace quillane {

/// The overlay on one screen, in device pixels: regions on this screen, points among all screens.
class AreaOverlayWindow final : public QWidget {
    Q_OBJECT

public:
    /// On the screen of the overlay's picture with this index.
    AreaOverlayWindow(AreaOverlay& overlay, std::size_t picture);

    /// The region where the current selection is drawn, with its label and the hint.
    [[nodiscard]] QRegion drawn() const;

    void redraw(const QRegion& region);

    /// Grabs the pointer and the keyboard; false when another program has one of them.
    [[nodiscard]] bool grabInput();
    void releaseInput();

    /// Describes the overlay's purpose, or the selection, to assistive technologies.
    void announce();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] const ScreenPicture& picture() const { return overlay_.pictures()[picture_]; }

    [[nodiscard]] core::PixelPoint pointOf(const QMouseEvent& event) const;
    [[nodiscard]] bool holds(core::PixelPoint point) const;
    [[nodiscard]] QRect here(const core::PixelRect& area) const;
    [[nodiscard]] int scaled(double length) const;
    [[nodiscard]] QString rendered(const core::LocalizedText& text) const;
    [[nodiscard]] QSize labelSize(const QString& text) const;
    [[nodiscard]] QRect sizeLabel() const;
    [[nodiscard]] QString sizeText() const;
    [[nodiscard]] QRect hint() const;
    [[nodiscard]] QString hintText() const;
    void drawLabel(QPainter& painter, const QRect& place, const QString& text) const;

    AreaOverlay& overlay_;
    std::size_t picture_;
    QFont labelFont_;
};

} // namespace quillane
