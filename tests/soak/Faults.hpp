// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "soak/SoakDesktop.hpp"

#include <functional>
#include <random>
#include <vector>

namespace quillane::soak {

/// Something that breaks while the agent works, and is repaired.
struct Fault {
    const char* name;
    std::function<void()> begin;
    std::function<void()> end;
};

/// All that this machine permits, on this desktop, which must outlive them. The end of the X server is not among them,
/// because nothing comes after it.
[[nodiscard]] std::vector<Fault> faults(SoakDesktop& desktop, std::mt19937& random);

} // namespace quillane::soak
