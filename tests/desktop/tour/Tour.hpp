// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/agent/LiveAgent.hpp"

#include <functional>
#include <utility>

namespace quillane::live {

/// Reports the tour step by step: prints one line for each with what was seen, and takes a picture of the screen.
class Tour {
public:
    Tour(LiveDesktop& desktop, std::filesystem::path folder) : desktop_(desktop), folder_(std::move(folder)) {}

    /// Runs one step. The step returns what it saw, for the line, or throws what it did not see, which ends the tour.
    void step(const std::string& name, const std::function<std::string()>& action);

private:
    LiveDesktop& desktop_;
    std::filesystem::path folder_;
    int count_ = 0;
};

/// Fails a step whose effect was not seen.
void mustSee(bool seen, const std::string& what);

/// The same; `what` is called after the look, to describe it.
void mustSee(bool seen, const std::function<std::string()>& what);

/// The value, or the end of the step with the error in its place.
template <typename T>
[[nodiscard]] T got(tl::expected<T, std::string> value) {
    mustSee(value.has_value(), value ? std::string() : value.error());
    return std::move(*value);
}

} // namespace quillane::live
