// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

extern "C" {
// The two calls that `@autoreleasepool` is compiled to (Clang, "Objective-C Automatic Reference Counting", run-time
// support). No public header declares them.
void* objc_autoreleasePoolPush();
void objc_autoreleasePoolPop(void* pool);
}

namespace quillane {

/// Releases at the end of its scope what the system's functions have autoreleased meanwhile. For C++ sources; in
/// Objective-C++ `@autoreleasepool` does the same.
class AutoreleasePool {
public:
    AutoreleasePool() : pool_(objc_autoreleasePoolPush()) {}

    ~AutoreleasePool() { objc_autoreleasePoolPop(pool_); }

    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;

private:
    void* pool_;
};

} // namespace quillane
