// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "soak/Soak.hpp"

#include "desktop/fixture/LiveDesktopTest.hpp"

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <numeric>
#include <stdexcept>

namespace quillane::soak {
namespace {

using live::require;
using namespace std::chrono_literals;

constexpr std::size_t tooManyProblems = 10;
constexpr double memoryShare = 0.10;
constexpr double memoryMegabytes = 6;
constexpr double moreDescriptors = 4;

} // namespace

Soak::Soak(SoakDesktop& desktop, unsigned seed, std::filesystem::path folder)
    : soak_(desktop),
      random_(seed),
      folder_(std::move(folder)),
      activities_(activities(desktop, random_)),
      faults_(faults(desktop, random_)) {}

bool Soak::run(std::chrono::seconds time) {
    soak_.startAgent();
    samples_.emplace(soak_.agent().process().pid(), soak_.desktop().runtimeFolder() / "quillane.sock");
    attempt("the first check", [&] { soak_.checkKeyboard(0); });
    for (const auto& activity : activities_) { // what is loaded at its first use belongs to the first minutes
        attempt(activity.name, activity.run);
        ++done_[activity.name];
    }
    for (bool isFirst = true;
         !isOver() && (isFirst || samples_->secondsSinceStart() < static_cast<double>(time.count())); isFirst = false) {
        std::ranges::shuffle(faults_, random_);
        for (auto& fault : faults_) {
            if (!isOver() && (isFirst || samples_->secondsSinceStart() < static_cast<double>(time.count()))) {
                round(fault);
            }
        }
    }
    endWithXServer();
    judge();
    return problems_ == 0;
}

void Soak::round(Fault& fault) {
    act(6, true);
    FaultSpan span{fault.name, samples_->secondsSinceStart(), 0};
    attempt(std::string(fault.name) + " begins", fault.begin);
    act(3, false);
    attempt(std::string(fault.name) + " ends", fault.end);
    span.end = samples_->secondsSinceStart();
    spans_.push_back(span);
    attempt(std::string("the keyboard after ") + fault.name, [&] {
        require(soak_.agent().waitForStatus([](const auto& status) { return status.at("monitorRunning") == true; }),
                "the agent observes no keys");
        soak_.checkKeyboard(random_() % 2);
    });
    attempt(std::string("the history after ") + fault.name, [&] { soak_.checkHistory(); });
    std::cout << std::fixed << std::setprecision(0) << std::setw(6) << span.begin << " s  " << fault.name << ", "
              << span.end - span.begin << " s; " << soak_.copies().count() << " copies, " << problems_ << " problems"
              << std::endl;
}

void Soak::act(int count, bool isCalm) {
    const int all = std::accumulate(activities_.begin(), activities_.end(), 0, [&](int sum, const Activity& activity) {
        return sum + (isCalm || !activity.needsCalm ? activity.weight : 0);
    });
    for (int i = 0; i < count && !isOver(); ++i) {
        int chosen = static_cast<int>(random_() % static_cast<unsigned>(all));
        for (const auto& activity : activities_) {
            if ((isCalm || !activity.needsCalm) && (chosen -= activity.weight) < 0) {
                attempt(activity.name, activity.run);
                ++done_[activity.name];
                break;
            }
        }
    }
}

void Soak::attempt(const std::string& what, const std::function<void()>& action) {
    if (isOver()) {
        return;
    }
    try {
        action();
    } catch (const std::exception& problem) {
        report(what + ": " + problem.what());
    }
}

/// Nothing that was due may be lost with the session, and the agent ends by itself.
void Soak::endWithXServer() {
    samples_->stop();
    if (!soak_.agent().process().isRunning()) {
        report("the agent has ended: " + live::readFile(soak_.desktop().logFolder() / "quillane.log"));
        return;
    }
    for (int i = 0; i < 10; ++i) {
        attempt("the last copies", activities_.front().run);
    }
    soak_.desktop().killService("Xvfb");
    const auto exit = soak_.agent().process().waitForExit(live::defaultTimeout);
    if (!exit || exit->signal != 0) {
        report(exit ? "the agent has crashed with the X server, signal " + std::to_string(exit->signal)
                    : "the agent outlives the X server");
    }
    try {
        soak_.checkHistory();
    } catch (const std::exception& problem) {
        report(std::string("the history after the end of the X server: ") + problem.what());
    }
}

void Soak::judge() {
    const auto samples = samples_->all();
    const auto memory = memoryGrowth(samples);
    const auto descriptors = descriptorGrowth(samples);
    const auto times = latencies(samples);
    if (!isFlat(memory, memoryShare, memoryMegabytes)) {
        report("the memory grows");
    }
    if (!isFlat(descriptors, 0, moreDescriptors)) {
        report("the descriptors grow");
    }
    if (times.empty() || times.back() >= static_cast<double>(Samples::timeout.count())) {
        report("the agent did not answer in time");
    }
    const auto latency = [&](std::size_t percent) {
        return times.empty() ? 0 : times[std::min(times.size() * percent / 100, times.size() - 1)];
    };
    std::cout << std::fixed << std::setprecision(1);
    for (const auto& [name, count] : done_) {
        std::cout << std::setw(6) << count << " x " << name << '\n';
    }
    std::cout << soak_.copies().count() << " copies, " << spans_.size() << " faults of " << faults_.size()
              << " kinds and "
              << "the end of the X server, " << samples_->secondsSinceStart() / 60 << " min\n"
              << "memory " << memory.before << " then " << memory.after << " MiB, descriptors " << std::setprecision(0)
              << descriptors.before << " then " << descriptors.after << std::setprecision(1) << "; an answer took "
              << latency(50) << " ms at the median, " << latency(99) << " ms for 99 %, "
              << (times.empty() ? 0 : times.back()) << " ms at most\n";
    if (!live::writeFile(folder_ / "plot.svg", plot(samples, spans_))) {
        report("the plot cannot be written");
    }
    std::cout << "the plot is in " << (folder_ / "plot.svg").string() << std::endl;
}

void Soak::report(const std::string& problem) {
    ++problems_;
    std::cout << "PROBLEM " << problems_ << ": " << problem << std::endl;
    static_cast<void>(soak_.desktop().takeScreenshot(folder_ / ("problem-" + std::to_string(problems_) + ".png")));
}

bool Soak::isOver() {
    return problems_ >= tooManyProblems || !soak_.agent().process().isRunning();
}

} // namespace quillane::soak
