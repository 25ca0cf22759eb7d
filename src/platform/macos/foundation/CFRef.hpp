// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace quillane {

/// Owns one reference to a Core Foundation object (Core Foundation, "Memory Management Programming Guide"). Copies
/// share the object. For the sources of this folder only.
template <typename T>
class CFRef {
public:
    CFRef() = default;

    /// Takes over the reference returned by a function with Create or Copy in its name. It may be null.
    [[nodiscard]] static CFRef adopt(T reference) { return CFRef(reference); }

    /// Adds a reference to an object that belongs to another owner. It may be null.
    [[nodiscard]] static CFRef retain(T reference) {
        if (reference) {
            CFRetain(reference);
        }
        return CFRef(reference);
    }

    CFRef(const CFRef& other) : CFRef(retain(other.reference_)) {}

    CFRef(CFRef&& other) noexcept : reference_(std::exchange(other.reference_, nullptr)) {}

    CFRef& operator=(CFRef other) noexcept {
        std::swap(reference_, other.reference_);
        return *this;
    }

    ~CFRef() {
        if (reference_) {
            CFRelease(reference_);
        }
    }

    [[nodiscard]] T get() const { return reference_; }

    explicit operator bool() const { return reference_ != nullptr; }

private:
    explicit CFRef(T reference) : reference_(reference) {}

    T reference_ = nullptr;
};

/// The object as type T if its CFTypeID is that of T, otherwise null. Borrowed, as the object is.
template <typename T>
[[nodiscard]] T cfCast(CFTypeRef object, CFTypeID type) {
    return object && CFGetTypeID(object) == type ? static_cast<T>(object) : nullptr;
}

} // namespace quillane
