// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "soak/Activities.hpp"
#include "soak/Faults.hpp"
#include "soak/Plot.hpp"
#include "soak/Samples.hpp"

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace quillane::soak {

/// Uses the agent at random for some time, breaks what it works with again and again, and checks each time that the
/// keyboard is free and that nothing copied was lost. Prints a line for each fault and each problem, and a summary.
class Soak {
public:
    /// `folder` gets the plot, pictures of the screen at each problem, and the programs' output.
    Soak(SoakDesktop& desktop, unsigned seed, std::filesystem::path folder);

    /// Returns whether everything held. Every fault comes at least once, however short the time.
    [[nodiscard]] bool run(std::chrono::seconds time);

private:
    void round(Fault& fault);
    void act(int count, bool isCalm);
    void attempt(const std::string& what, const std::function<void()>& action);
    void endWithXServer();
    void judge();
    void report(const std::string& problem);
    [[nodiscard]] bool isOver();

    SoakDesktop& soak_;
    std::mt19937 random_;
    std::filesystem::path folder_;
    std::vector<Activity> activities_;
    std::vector<Fault> faults_;
    std::vector<FaultSpan> spans_;
    std::map<std::string, int> done_; ///< how often each activity was done
    std::optional<Samples> samples_;
    std::size_t problems_ = 0;
};

} // namespace quillane::soak
