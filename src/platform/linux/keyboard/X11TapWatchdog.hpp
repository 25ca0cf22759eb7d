// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/MainQueue.hpp"
#include "platform/linux/keyboard/X11Keyboard.hpp"
#include "platform/linux/keyboard/X11RawInput.hpp"
#include "platform/linux/x11/X11Connection.hpp"

#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include <xcb/sync.h>

namespace quillane {

/// Checks once a second whether the server still answers, and whether the keyboard was used without raw events. It
/// never waits for the answer.
class X11TapWatchdog {
public:
    /// `onSilence` is called when keys are missed: the server does not answer, or it has had keys that did not arrive
    /// here. `onAnswer` is called for every other answer.
    X11TapWatchdog(X11Connection& connection, X11RawInput& input, X11Keyboard& keyboard, MainQueue& mainQueue,
                   std::function<void()> onSilence, std::function<void()> onAnswer);

    void start();
    void stop();

    /// Checks now instead of at the next full second.
    void ask();

    /// False while an answer is overdue.
    [[nodiscard]] bool serverAnswers() const { return answers_; }

private:
    using Clock = std::chrono::steady_clock;

    void findIdleCounter();
    void takeCounters(const xcb_sync_list_system_counters_reply_t& reply);
    void noteOverdue();
    void takeIdleTime(std::optional<std::chrono::milliseconds> idle);
    void compareKeysDown();
    void finish(bool silent);

    X11Connection& connection_;
    X11Keyboard& keyboard_;
    MainQueue& mainQueue_;
    std::function<void()> onSilence_;
    std::function<void()> onAnswer_;
    std::optional<xcb_sync_counter_t> idleCounter_;
    bool running_ = false;
    bool asked_ = false;
    bool answers_ = true;
    Clock::time_point askedAt_;
    Clock::time_point lastKey_;
    core::Lifetime lifetime_;
    QTimer overdue_;
    core::Subscription keys_;
    core::Subscription losses_;
    core::Subscription openings_;
    core::Subscription ticks_;
};

} // namespace quillane
