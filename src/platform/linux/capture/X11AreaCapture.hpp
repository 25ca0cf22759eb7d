// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AreaCapture.hpp"
#include "platform/MainQueue.hpp"
#include "platform/Pasteboard.hpp"
#include "platform/common/ThreadSerialQueue.hpp"
#include "platform/linux/capture/AreaOverlay.hpp"

#include <QObject>

#include <chrono>
#include <memory>

namespace quillane {

/// An own selection over all screens of the X server. The picture stays on the clipboard as long as the program runs.
class X11AreaCapture final : public AreaCapture {
public:
    /// `patience` is how long a selection stays on the screen without input.
    X11AreaCapture(Pasteboard& pasteboard, MainQueue& mainQueue,
                   std::chrono::milliseconds patience = std::chrono::seconds(60));
    ~X11AreaCapture() override;

    [[nodiscard]] Means means() const override { return Means::ownSelection; }

    [[nodiscard]] bool start(core::AppLanguage language, std::function<void()> keptOut) override;

    bool openShortcutSettings() override { return false; }

    /// The selection on the screen; nullptr while there is none.
    [[nodiscard]] const AreaOverlay* overlay() const { return overlay_.get(); }

private:
    /// Qt destroys it only when the event that has ended it has been dealt with.
    struct DeleteLater {
        void operator()(QObject* object) const { object->deleteLater(); }
    };

    void show(core::AppLanguage language, std::function<void()> keptOut);
    void copy(const QImage& picture);

    Pasteboard& pasteboard_;
    MainQueue& mainQueue_;
    std::chrono::milliseconds patience_;
    bool starting_ = false;
    std::unique_ptr<AreaOverlay, DeleteLater> overlay_;
    std::shared_ptr<void> alive_ = std::make_shared<int>(); ///< for what comes back after this has gone
    ThreadSerialQueue encoding_;                            ///< last: what it does uses the others
};

} // namespace quillane
