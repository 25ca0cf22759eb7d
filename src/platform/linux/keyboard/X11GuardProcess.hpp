// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/FileDescriptor.hpp"

#include <cstdint>
#include <string>

#include <sys/types.h>

namespace quillane {

/// The small process that ends a connection while this one is stopped (src/platform/linux/guard). It starts when there
/// is first something to guard, and ends with this process. Without its program there is none.
class X11GuardProcess {
public:
    explicit X11GuardProcess(std::string display) : display_(std::move(display)) {}

    ~X11GuardProcess();
    X11GuardProcess(const X11GuardProcess&) = delete;
    X11GuardProcess& operator=(const X11GuardProcess&) = delete;

    /// Names the connection that holds keys by one of its windows; 0 for none.
    void guard(std::uint32_t window);

private:
    bool start();
    bool write(std::uint32_t window);
    void forget();

    std::string display_;
    pid_t pid_ = 0;
    core::FileDescriptor input_;
};

} // namespace quillane
