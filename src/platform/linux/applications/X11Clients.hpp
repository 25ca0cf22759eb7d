// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Lifetime.hpp"
#include "core/support/Subscription.hpp"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace quillane {

class X11Connection;

/// The programs that are connected to the X server, with windows or without (X-Resource extension 1.2). Main thread.
/// Nothing waits: the list is the server's last answer; reading it requests a new one, at most every one and a half
/// seconds.
class X11Clients {
public:
    explicit X11Clients(X11Connection& connection);

    /// The processes whose program file has this name, except this one.
    [[nodiscard]] std::vector<pid_t> running(const std::function<bool(std::string_view program)>& isWanted);

private:
    void ask();

    X11Connection& connection_;
    std::optional<std::chrono::steady_clock::time_point> asked_;
    std::vector<pid_t> processes_; ///< each once
    core::Lifetime lifetime_;
    core::Subscription losses_;
};

} // namespace quillane
