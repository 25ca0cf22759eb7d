// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>

namespace quillane::core {

/// An immutable value, so that copies share one object and cost a reference count, whatever its size. Equality is that
/// of the values. Copies may be used on several threads.
template <typename T>
class Shared {
public:
    Shared() : Shared(T{}) {}

    Shared(T value) // NOLINT(google-explicit-constructor): stands for the value itself
        : value_(std::make_shared<const T>(std::move(value))) {}

    [[nodiscard]] const T& operator*() const { return *value_; }

    [[nodiscard]] const T* operator->() const { return value_.get(); }

    /// Whether both are copies of one object: a cheap proof of equality.
    [[nodiscard]] bool isSame(const Shared& other) const { return value_ == other.value_; }

    friend bool operator==(const Shared& a, const Shared& b) { return a.isSame(b) || *a == *b; }

private:
    std::shared_ptr<const T> value_;
};

} // namespace quillane::core
