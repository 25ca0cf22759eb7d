// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <compare>

namespace quillane::core {

/// A point in time as Apple's formats hold it: seconds since 2001-01-01 00:00:00 UTC. Kept as the number itself, so
/// that a date survives being stored and read without drift.
struct Date {
    double secondsSinceReferenceDate = 0;

    auto operator<=>(const Date&) const = default;
};

/// 2001-01-01 00:00:00 UTC in seconds since 1970-01-01 00:00:00 UTC.
inline constexpr double referenceDateInUnixSeconds = 978'307'200;

[[nodiscard]] inline Date dateOf(std::chrono::system_clock::time_point time) {
    const std::chrono::duration<double> sinceUnixEpoch = time.time_since_epoch();
    return {sinceUnixEpoch.count() - referenceDateInUnixSeconds};
}

} // namespace quillane::core
