// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"
#include "core/support/Lifetime.hpp"

#include <cstdint>
#include <functional>
#include <memory>

namespace quillane {

struct Platform;

/// The command "Capture Area to Clipboard…". The picture goes to the clipboard, where the history records it like any
/// other copy. Main thread.
///
///     ClipboardScreenCapture capture(platform, [&] { return preferences.state().language; });
///     capture.report = [&](const auto& text) { … };
///     capture.start();
class ClipboardScreenCapture {
public:
    /// `language` returns the current one. The platform must outlive the capture.
    ClipboardScreenCapture(const Platform& platform, std::function<core::AppLanguage()> language);
    ClipboardScreenCapture(const ClipboardScreenCapture&) = delete;
    ClipboardScreenCapture& operator=(const ClipboardScreenCapture&) = delete;

    /// Begins a capture once every modifier is up; waits for that at most a second. Replaces a start that is still
    /// waiting.
    void start();

    /// The outcome, or why there is none.
    std::function<void(const core::LocalizedText&)> report;

    /// What the user can do about the last report: the action and its title.
    std::function<void(const core::LocalizedText& title, std::function<void()> action)> offer;

private:
    void attempt(int number);
    void begin();
    void announce(const core::LocalizedText& text) const;

    const Platform& platform_;
    std::function<core::AppLanguage()> language_;
    std::uint64_t operation_ = 0;
    core::Lifetime lifetime_;
};

} // namespace quillane
