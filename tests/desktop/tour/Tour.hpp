// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/agent/LiveAgent.hpp"

#include <functional>

namespace quillane::live {

/// Tells what is done, step by step: prints one line for each with what was seen, and takes a picture of the screen.
class Tour {
public:
    Tour(LiveDesktop& desktop, std::filesystem::path folder) : desktop_(desktop), folder_(std::move(folder)) {}

    /// Runs one step. It returns what it saw, for the line, or throws what it did not see, which ends the tour.
    void step(const std::string& name, const std::function<std::string()>& action);

private:
    LiveDesktop& desktop_;
    std::filesystem::path folder_;
    int count_ = 0;
};

/// Ends a step whose effect was not seen.
void mustSee(bool seen, const std::string& what);

} // namespace quillane::live
