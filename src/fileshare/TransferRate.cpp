// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/TransferRate.hpp"

#include <cmath>

namespace quillane {

namespace {

constexpr std::chrono::milliseconds minimumMeasured{500};

} // namespace

void TransferRate::add(std::int64_t sent, Time now) {
    samples_.push_back({sent, now});
    while (samples_.size() > 2 && now - samples_[1].time >= window) {
        samples_.pop_front();
    }
}

std::optional<TransferRate::Estimate> TransferRate::estimate(std::int64_t total) const {
    if (samples_.size() < 2) {
        return std::nullopt;
    }
    const std::chrono::duration<double> time = samples_.back().time - samples_.front().time;
    const auto moved = samples_.back().sent - samples_.front().sent;
    const auto left = total - samples_.back().sent;
    if (time < minimumMeasured || moved <= 0 || left <= 0) {
        return std::nullopt;
    }
    const double speed = static_cast<double>(moved) / time.count();
    return Estimate{speed, std::chrono::seconds(std::llround(std::ceil(static_cast<double>(left) / speed)))};
}

} // namespace quillane
