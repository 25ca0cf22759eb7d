// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>

namespace quillane::core {

/// Lets callbacks that may be called late find out whether the object that they belong to still exists. The object
/// holds it as a member, each callback a watch:
///
///     queue.post([this, alive = lifetime_.watch()] {
///         if (alive) { … }
///     });
///
/// A watch may be carried to other threads, but means something only on the object's own.
class Lifetime {
public:
    /// True until the lifetime it was taken from is over.
    class Watch {
    public:
        explicit operator bool() const { return !token_.expired(); }

    private:
        friend class Lifetime;

        explicit Watch(std::weak_ptr<void> token) : token_(std::move(token)) {}

        std::weak_ptr<void> token_;
    };

    Lifetime() = default;
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;

    [[nodiscard]] Watch watch() const { return Watch(token_); }

    /// Ends it before the object is destroyed.
    void end() { token_.reset(); }

    /// Begins another one. Watches of the one before become false.
    void restart() { token_ = std::make_shared<int>(); }

    /// For connections that keep the owner of a pending request.
    operator std::weak_ptr<void>() const { return token_; }

private:
    std::shared_ptr<void> token_ = std::make_shared<int>();
};

} // namespace quillane::core
