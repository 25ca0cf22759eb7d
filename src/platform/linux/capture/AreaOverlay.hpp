// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/clipboard/AreaSelection.hpp"
#include "core/localization/AppLanguage.hpp"
#include "platform/linux/capture/ScreenPicture.hpp"

#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

class QKeyEvent;
class QMouseEvent;

namespace quillane {

class AreaOverlayWindow;

/// Covers the screens with their dimmed pictures and shows the selected area undimmed. Grabs the pointer and the
/// keyboard; the application in front stays in front.
///
/// Dragging selects; meanwhile Space moves the area and Shift fixes one of its sides. Releasing captures it, a click
/// cancels. Arrow keys move an area and with Shift resize it, by ten pixels or with Control by one; Return captures it.
/// Escape, the right button and a while without input cancel: no screen lock can start while this has the keyboard.
class AreaOverlay final : public QObject {
    Q_OBJECT

public:
    struct Outcome {
        std::function<void(const QImage& picture)> taken;
        std::function<void()> cancelled;
        std::function<void()> keptOut; ///< another program does not release the pointer or the keyboard
    };

    /// `pictures` is not empty; `idleTimeout` is the timeout without input. One of the functions is called, once, from
    /// the event loop; from then on nothing is shown, and the overlay may be destroyed later.
    AreaOverlay(std::vector<ScreenPicture> pictures, core::AppLanguage language, std::chrono::milliseconds idleTimeout,
                Outcome outcome);
    ~AreaOverlay() override;

    [[nodiscard]] const std::vector<ScreenPicture>& pictures() const { return pictures_; }

    [[nodiscard]] core::AppLanguage language() const { return language_; }

    [[nodiscard]] const core::AreaSelection& selection() const { return selection_; }

    /// It has the pointer and the keyboard.
    [[nodiscard]] bool isReady() const { return ready_; }

    // Input from its windows. Points are device pixels among all screens.

    void mousePress(Qt::MouseButton button, core::PixelPoint point);
    void mouseMove(core::PixelPoint point);
    void mouseRelease(Qt::MouseButton button, core::PixelPoint point);
    void keyPress(const QKeyEvent& event);
    void keyRelease(const QKeyEvent& event);

private:
    void tryToGrab();
    void arrow(int dx, int dy, Qt::KeyboardModifiers modifiers);
    void take();
    void cancel();
    void change(const std::function<void()>& step);
    void end(const std::function<void()>& outcome);

    std::vector<ScreenPicture> pictures_;
    core::AppLanguage language_;
    Outcome outcome_;
    core::AreaSelection selection_;
    std::vector<std::unique_ptr<AreaOverlayWindow>> windows_;
    QTimer grabTimer_;
    QTimer idleTimer_;
    int grabAttempts_ = 0;
    bool ready_ = false;
    bool ended_ = false;
};

} // namespace quillane
