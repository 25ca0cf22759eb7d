// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/AreaCapture.hpp"
#include "platform/MainQueue.hpp"
#include "platform/Pasteboard.hpp"
#include "platform/common/ThreadSerialQueue.hpp"
#include "platform/linux/capture/AreaOverlay.hpp"

#include <QObject>

#include <chrono>
#include <memory>

namespace quillane {

/// The program's own selection over all screens of the X server. The picture stays on the clipboard while the program
/// runs.
class X11AreaCapture final : public AreaCapture {
public:
    /// `idleTimeout` is the timeout of a selection without input.
    X11AreaCapture(Pasteboard& pasteboard, MainQueue& mainQueue,
                   std::chrono::milliseconds idleTimeout = std::chrono::seconds(60));
    ~X11AreaCapture() override;

    [[nodiscard]] Means means() const override { return Means::ownSelection; }

    [[nodiscard]] bool start(core::AppLanguage language, std::function<void()> keptOut) override;

    bool openShortcutSettings() override { return false; }

    /// The selection on the screen; nullptr while there is none.
    [[nodiscard]] const AreaOverlay* overlay() const { return overlay_.get(); }

private:
    /// Qt destroys it only after the event that ended it has been handled.
    struct DeleteLater {
        void operator()(QObject* object) const { object->deleteLater(); }
    };

    void show(core::AppLanguage language, std::function<void()> keptOut);
    void copy(const QImage& picture);

    Pasteboard& pasteboard_;
    MainQueue& mainQueue_;
    std::chrono::milliseconds idleTimeout_;
    bool starting_ = false;
    std::unique_ptr<AreaOverlay, DeleteLater> overlay_;
    core::Lifetime lifetime_;
    ThreadSerialQueue encoding_; ///< last: it uses the others
};

} // namespace quillane
