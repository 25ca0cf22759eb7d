// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

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
/// Nothing waits: the list is what the server answered last, and is asked for again when it is read, at most once in
/// one and a half seconds.
class X11Clients {
public:
    explicit X11Clients(X11Connection& connection);

    /// The processes whose program's file is so named, without this one.
    [[nodiscard]] std::vector<pid_t> running(const std::function<bool(std::string_view program)>& isWanted);

private:
    void ask();

    X11Connection& connection_;
    std::optional<std::chrono::steady_clock::time_point> asked_;
    std::vector<pid_t> processes_;                          ///< each once
    std::shared_ptr<void> alive_ = std::make_shared<int>(); // shared with answers that are on their way
    core::Subscription losses_;
};

} // namespace quillane
