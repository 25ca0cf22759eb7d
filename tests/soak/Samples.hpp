// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <sys/types.h>

namespace quillane::soak {

/// What the agent was like at one moment.
struct Sample {
    double seconds = 0;                 ///< since the start
    double megabytes = 0;               ///< memory of its own: anonymous pages that are resident
    int descriptors = 0;                ///< that are open
    std::optional<double> milliseconds; ///< until it answered a request; none when it did not within the timeout
};

/// The median of one of the sample's figures over part of the run.
struct Growth {
    double before = 0; ///< in the first half of what was looked at
    double after = 0;  ///< in the second
};

/// Watches the agent from a thread of its own.
class Samples {
public:
    static constexpr std::chrono::milliseconds interval{250};
    static constexpr std::chrono::milliseconds timeout{5'000}; ///< of a request

    Samples(pid_t agent, std::filesystem::path controlSocket);
    ~Samples();
    Samples(const Samples&) = delete;
    Samples& operator=(const Samples&) = delete;

    [[nodiscard]] double secondsSinceStart() const;

    /// Ends the watching, so that the agent may end.
    void stop();

    [[nodiscard]] std::vector<Sample> all() const;

private:
    void watch();

    pid_t agent_;
    std::filesystem::path socket_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    mutable std::mutex mutex_; ///< of the samples
    std::vector<Sample> samples_;
    std::atomic<bool> isStopped_{false};
    std::thread thread_;
};

/// Of what remains once the agent has warmed up, which takes a third of the run and at most two minutes.
[[nodiscard]] Growth memoryGrowth(const std::vector<Sample>& samples);
[[nodiscard]] Growth descriptorGrowth(const std::vector<Sample>& samples);

/// Memory and descriptors stay where they are, but for what an allocator and caches need.
[[nodiscard]] bool isFlat(const Growth& growth, double share, double absolute);

/// The latencies, in order.
[[nodiscard]] std::vector<double> latencies(const std::vector<Sample>& samples);

} // namespace quillane::soak
