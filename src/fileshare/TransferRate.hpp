// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <optional>

namespace quillane {

/// How fast an upload is and how long it still takes, from what was sent in the last few seconds.
class TransferRate {
public:
    using Time = std::chrono::steady_clock::time_point;

    struct Estimate {
        double bytesPerSecond = 0;
        std::chrono::seconds left{};

        bool operator==(const Estimate&) const = default;
    };

    /// The time over which the speed is taken.
    static constexpr std::chrono::seconds window{5};

    /// So many bytes in all were sent until now.
    void add(std::int64_t sent, Time now);

    /// None until half a second has been seen, while nothing moves, and once all is sent.
    [[nodiscard]] std::optional<Estimate> estimate(std::int64_t total) const;

private:
    struct Sample {
        std::int64_t sent;
        Time time;
    };

    std::deque<Sample> samples_;
};

} // namespace quillane
