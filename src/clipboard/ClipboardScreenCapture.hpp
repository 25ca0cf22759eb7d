// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"
#include "platform/AreaCapture.hpp"
#include "platform/KeyEvents.hpp"
#include "platform/MainQueue.hpp"
#include "platform/PermissionService.hpp"

#include <cstdint>
#include <functional>
#include <memory>

namespace quillane {

/// What area capture needs of the desktop, borrowed.
struct ScreenCaptureServices {
    MainQueue& mainQueue;
    const KeyEvents& keyEvents;
    const PermissionService& permissions;
    AreaCapture& areaCapture;
    std::function<core::AppLanguage()> language; ///< of the moment
};

/// The command "Capture Area to Clipboard…": the picture lands on the clipboard, where the history takes it up like any
/// other copy. Main thread.
///
///     ClipboardScreenCapture capture({…});
///     capture.report = [&](const auto& text) { … };
///     capture.start();
class ClipboardScreenCapture {
public:
    explicit ClipboardScreenCapture(ScreenCaptureServices services);
    ClipboardScreenCapture(const ClipboardScreenCapture&) = delete;
    ClipboardScreenCapture& operator=(const ClipboardScreenCapture&) = delete;

    /// Begins a capture once every modifier is up, which is given a second. Takes the place of a start that still
    /// waits.
    void start();

    /// How it goes, and why it does not.
    std::function<void(const core::LocalizedText&)> report;

    /// What the user can do about what was reported last: the action's title, and the action.
    std::function<void(const core::LocalizedText& title, std::function<void()> action)> offer;

private:
    void attempt(int number);
    void begin();
    void tell(const core::LocalizedText& text) const;

    ScreenCaptureServices services_;
    std::uint64_t operation_ = 0;
    std::shared_ptr<void> alive_ = std::make_shared<int>(); ///< for what comes back after this has gone
};

} // namespace quillane
