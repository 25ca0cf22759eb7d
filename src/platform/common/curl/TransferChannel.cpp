// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/curl/TransferChannel.hpp"

#include <utility>
#include <vector>

namespace quillane {

TransferChannel::TransferChannel(MainQueue& queue, core::UrlSessionDelegate& delegate)
    : queue_(&queue), delegate_(&delegate) {}

void TransferChannel::close() {
    delegate_ = nullptr;
    {
        const std::lock_guard lock(mutex_);
        queue_ = nullptr;
    }
    end();
}

void TransferChannel::end() {
    ending_ = true;
    const std::lock_guard lock(mutex_);
    if (waker_) {
        waker_();
    }
}

void TransferChannel::post(Report report) {
    const std::lock_guard lock(mutex_);
    if (queue_ != nullptr) {
        queue_->post([self = shared_from_this(), report = std::move(report)] {
            if (self->delegate_ != nullptr) {
                report(*self->delegate_);
            }
        });
    }
}

void TransferChannel::reportSent(std::int64_t sent, std::int64_t expected) {
    const bool isLast = sent >= expected;
    const auto now = Clock::now();
    sent_ = sent;
    expected_ = expected;
    if ((!isLast && now - lastSentPost_ < progressInterval) || isSentPosted_.exchange(true)) {
        return; // the posted report will use the newest number
    }
    lastSentPost_ = now;
    post([this](core::UrlSessionDelegate& delegate) {
        isSentPosted_ = false;
        delegate.didSendBodyData(sent_, expected_);
    });
}

void TransferChannel::reportData(std::span<const std::byte> data) {
    post([bytes = std::vector(data.begin(), data.end())](auto& delegate) { delegate.didReceiveData(bytes); });
}

void TransferChannel::reportRedirect() {
    post([](auto& delegate) { delegate.redirectRequested(); });
}

void TransferChannel::reportCompletion(std::optional<core::UrlResponse> response, std::optional<core::UrlError> error) {
    post([this, response, error](core::UrlSessionDelegate& delegate) {
        delegate_ = nullptr;
        delegate.didComplete(response, error);
    });
    end();
}

void TransferChannel::setWaker(std::function<void()> waker) {
    const std::lock_guard lock(mutex_);
    waker_ = std::move(waker);
}

} // namespace quillane
