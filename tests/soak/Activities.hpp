// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "soak/SoakDesktop.hpp"

#include <functional>
#include <random>
#include <vector>

namespace quillane::soak {

/// Something that a user does. It throws when its effect is not seen.
struct Activity {
    const char* name;
    int weight;     ///< how often, compared with the others
    bool needsCalm; ///< its effect can only be seen while nothing is broken
    std::function<void()> run;
};

/// All of them, on this desktop, which must outlive them.
[[nodiscard]] std::vector<Activity> activities(SoakDesktop& desktop, std::mt19937& random);

} // namespace quillane::soak
