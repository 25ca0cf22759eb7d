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

/// The screens as they were, dimmed, over everything that is on them, with the area that the user selects in full
/// light. It has the pointer and the keyboard to itself; the application in front stays in front.
///
/// Drag selects; Space moves the area meanwhile, Shift keeps one of its sides; release takes it, a click cancels. Arrow
/// keys move an area and with Shift resize it, by ten pixels or with Control by one; Return takes it. Escape and the
/// right button cancel, and so does a while without any input: no lock can take the screen as long as this has the
/// keyboard.
class AreaOverlay final : public QObject {
    Q_OBJECT

public:
    struct Outcome {
        std::function<void(const QImage& picture)> taken;
        std::function<void()> cancelled;
        std::function<void()> keptOut; ///< another program does not let go of the pointer or the keyboard
    };

    /// `pictures` is not empty; `patience` is how long it stays without input. One of the functions is called, once,
    /// from the event loop; from then on nothing is shown, and the overlay may be destroyed later.
    AreaOverlay(std::vector<ScreenPicture> pictures, core::AppLanguage language, std::chrono::milliseconds patience,
                Outcome outcome);
    ~AreaOverlay() override;

    [[nodiscard]] const std::vector<ScreenPicture>& pictures() const { return pictures_; }

    [[nodiscard]] core::AppLanguage language() const { return language_; }

    [[nodiscard]] const core::AreaSelection& selection() const { return selection_; }

    /// It has the pointer and the keyboard.
    [[nodiscard]] bool isReady() const { return ready_; }

    // What its windows are told. Points are device pixels among all screens.

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
