// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/fixture/LiveDesktop.hpp"

#include <chrono>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace quillane::soak {

/// What a copy offers: each type and its bytes.
using Offer = std::vector<std::pair<std::string, std::string>>;

/// A program that copies, and an account of what it has copied and what must be on the disk.
class Copies {
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::milliseconds streamPause{200}; ///< between two copies of a stream

    [[nodiscard]] static tl::expected<Copies, std::string> start(live::LiveDesktop& desktop);

    /// Copies something of a random kind and size, `streamPause` after the one before at the earliest, and returns once
    /// it has been read, which the agent must do in time. False when the program does not copy.
    [[nodiscard]] bool copy(std::mt19937& random);

    /// Copies a short line.
    [[nodiscard]] bool copyLine();

    /// Copies what an application marks as secret.
    [[nodiscard]] bool copySecret();

    /// Until `restore`, what is copied, and what was not due yet, need not reach the disk.
    void suspend();

    /// The disk and its key are there again: what was copied meanwhile is due after `time`.
    void restore(std::chrono::milliseconds time);

    /// Of the latest copies, the numbers of those that must be on the disk at this moment: each a second after it was
    /// made, or three within a stream, and the time that the system needs for writing.
    [[nodiscard]] std::vector<int> due(Clock::time_point now, std::size_t most) const;

    /// Nothing before this moment is due any more.
    void forget() { made_.clear(); }

    [[nodiscard]] int count() const { return number_; }

private:
    struct Made {
        int number;
        Clock::time_point at;
        Clock::time_point earliest; ///< at which it can be due
    };

    Copies(live::LiveDesktop& desktop, std::filesystem::path pipe, live::ChildProcess process)
        : desktop_(&desktop), pipe_(std::move(pipe)), process_(std::move(process)) {}

    [[nodiscard]] bool record(const Offer& contents);
    [[nodiscard]] bool offer(const Offer& contents);
    [[nodiscard]] bool says(const std::string& word, std::chrono::milliseconds limit) const;

    live::LiveDesktop* desktop_;
    std::filesystem::path pipe_;
    live::ChildProcess process_;
    int number_ = 0;
    bool suspended_ = false;
    Clock::time_point last_; ///< when something was copied last
    std::vector<Made> made_;
};

} // namespace quillane::soak
