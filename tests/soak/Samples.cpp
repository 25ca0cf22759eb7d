// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "soak/Samples.hpp"

#include "platform/common/control/ControlSocket.hpp"

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <utility>

#include <sys/stat.h>

namespace quillane::soak {
namespace {

using Clock = std::chrono::steady_clock;

/// Linux has the number in the folder's size, since 6.2; otherwise whoever may read it counts (proc_pid_fd(5)).
int descriptorsOf(pid_t pid) {
    const auto folder = "/proc/" + std::to_string(pid) + "/fd";

    struct stat status {};

    if (::stat(folder.c_str(), &status) == 0 && status.st_size > 0) {
        return static_cast<int>(status.st_size);
    }
    std::error_code error;
    const std::filesystem::directory_iterator entries(folder, error);
    return error ? 0 : static_cast<int>(std::distance(begin(entries), end(entries)));
}

double megabytesOf(pid_t pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string word; status >> word;) {
        if (word == "RssAnon:") {
            double kibibytes = 0;
            status >> kibibytes;
            return kibibytes / 1024;
        }
    }
    return 0;
}

template <typename Projection>
Growth growthOf(const std::vector<Sample>& samples, Projection value) {
    if (samples.size() < 8) {
        return {};
    }
    constexpr double maximumWarmUp = 120;
    const double warmUp = std::min(maximumWarmUp, samples.back().seconds / 3);
    const auto first =
        std::ranges::find_if(samples, [&](const Sample& sample) { return sample.seconds >= warmUp; }) - samples.begin();
    const auto middle = (first + std::ssize(samples)) / 2;
    const auto median = [&](std::ptrdiff_t begin, std::ptrdiff_t end) {
        std::vector<double> values;
        std::transform(samples.begin() + begin, samples.begin() + end, std::back_inserter(values),
                       [&](const Sample& sample) { return static_cast<double>(std::invoke(value, sample)); });
        std::ranges::nth_element(values, values.begin() + std::ssize(values) / 2);
        return values[values.size() / 2];
    };
    return {median(first, middle), median(middle, std::ssize(samples))};
}

} // namespace

Samples::Samples(pid_t agent, std::filesystem::path controlSocket)
    : agent_(agent), socket_(std::move(controlSocket)), thread_([this] { watch(); }) {}

Samples::~Samples() {
    stop();
}

double Samples::secondsSinceStart() const {
    return std::chrono::duration<double>(Clock::now() - start_).count();
}

void Samples::stop() {
    isStopped_ = true;
    if (thread_.joinable()) {
        thread_.join();
    }
}

std::vector<Sample> Samples::all() const {
    const std::lock_guard lock(mutex_);
    return samples_;
}

void Samples::watch() {
    for (auto next = Clock::now(); !isStopped_; std::this_thread::sleep_until(next)) {
        Sample sample{secondsSinceStart(), megabytesOf(agent_), descriptorsOf(agent_), std::nullopt};
        const auto asked = Clock::now();
        if (sendControlRequest(socket_, {"status", {}}, timeout)) {
            sample.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - asked).count();
        }
        if (!isStopped_) { // else the agent may be ending
            const std::lock_guard lock(mutex_);
            samples_.push_back(sample);
        }
        next = std::max(next + interval, Clock::now());
    }
}

Growth memoryGrowth(const std::vector<Sample>& samples) {
    return growthOf(samples, &Sample::megabytes);
}

Growth descriptorGrowth(const std::vector<Sample>& samples) {
    return growthOf(samples, &Sample::descriptors);
}

bool isFlat(const Growth& growth, double share, double absolute) {
    return growth.after <= growth.before * (1 + share) + absolute;
}

std::vector<double> latencies(const std::vector<Sample>& samples) {
    std::vector<double> result;
    for (const auto& sample : samples) {
        result.push_back(sample.milliseconds.value_or(static_cast<double>(Samples::timeout.count())));
    }
    std::ranges::sort(result);
    return result;
}

} // namespace quillane::soak
