// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/UrlSession.hpp"
#include "platform/MainQueue.hpp"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>

namespace quillane {

/// The link between a transfer's thread and the main thread: reports go to the delegate through the main queue, the
/// request to end goes to the thread. Either side may be destroyed first.
class TransferChannel : public std::enable_shared_from_this<TransferChannel> {
public:
    using Clock = std::chrono::steady_clock;

    /// Minimum time between reports of sent bytes, except the last one.
    static constexpr std::chrono::milliseconds progressInterval{150};

    TransferChannel(MainQueue& queue, core::UrlSessionDelegate& delegate);

    /// Main thread: silences the delegate and asks the thread to end.
    void close();

    // Any thread. Nothing is reported after a completion.

    void reportSent(std::int64_t sent, std::int64_t expected);
    void reportData(std::span<const std::byte> data);
    void reportRedirect();
    void reportCompletion(std::optional<core::UrlResponse> response, std::optional<core::UrlError> error);

    // The transfer's thread.

    /// Sets what makes the thread check `isEnding` soon; set to null before that is destroyed.
    void setWaker(std::function<void()> waker);

    [[nodiscard]] bool isEnding() const { return ending_; }

    /// Data flowed, or the transfer made progress.
    void noteActivity() { activity_ = Clock::now().time_since_epoch().count(); }

    [[nodiscard]] Clock::time_point lastActivity() const {
        return Clock::time_point(Clock::duration(activity_.load()));
    }

private:
    using Report = std::function<void(core::UrlSessionDelegate&)>;

    void post(Report report);
    void end();

    std::mutex mutex_; ///< guards the queue and the waker
    MainQueue* queue_; ///< null once closed
    std::function<void()> waker_;
    core::UrlSessionDelegate* delegate_; ///< main thread only; null once completed or closed
    std::atomic<bool> ending_ = false;
    std::atomic<Clock::rep> activity_ = Clock::now().time_since_epoch().count();
    std::atomic<std::int64_t> sent_ = 0;
    std::atomic<std::int64_t> expected_ = 0;
    std::atomic<bool> isSentPosted_ = false;
    Clock::time_point lastSentPost_; ///< the transfer's thread only
};

} // namespace quillane
