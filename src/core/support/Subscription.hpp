// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <utility>

namespace quillane::core {

/// A move-only token for one subscription. Dropping it unsubscribes; it may outlive the object it was taken from.
class [[nodiscard]] Subscription {
public:
    Subscription() = default;

    explicit Subscription(std::function<void()> unsubscribe) : unsubscribe_(std::move(unsubscribe)) {}

    Subscription(Subscription&& other) noexcept : unsubscribe_(std::exchange(other.unsubscribe_, nullptr)) {}

    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            cancel();
            unsubscribe_ = std::exchange(other.unsubscribe_, nullptr);
        }
        return *this;
    }

    ~Subscription() { cancel(); }

    /// Unsubscribes now. Calling it again does nothing.
    void cancel() {
        if (auto unsubscribe = std::exchange(unsubscribe_, nullptr)) {
            unsubscribe();
        }
    }

private:
    std::function<void()> unsubscribe_;
};

} // namespace quillane::core
