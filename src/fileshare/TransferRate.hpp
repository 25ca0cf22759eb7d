// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>

namespace quillane {

/// The speed of an upload and the time left, from the progress of the last few seconds.
class TransferRate {
public:
    using Time = std::chrono::steady_clock::time_point;

    struct Estimate {
        double bytesPerSecond = 0;
        std::chrono::seconds left{};

        bool operator==(const Estimate&) const = default;
    };

    /// The time over which the speed is measured.
    static constexpr std::chrono::seconds window{5};

    /// Records that this many bytes in total have been sent by now.
    void add(std::int64_t sent, Time now);

    /// None during the first half second, while nothing is sent, and once everything is sent.
    [[nodiscard]] std::optional<Estimate> estimate(std::int64_t total) const;

private:
    struct Sample {
        std::int64_t sent;
        Time time;
    };

    std::deque<Sample> samples_;
};

} // namespace quillane
