// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "soak/Samples.hpp"

#include <string>
#include <vector>

namespace quillane::soak {

/// A fault, and how long it lasted, in seconds since the start.
struct FaultSpan {
    std::string name;
    double begin = 0;
    double end = 0;
};

/// Memory, latency and descriptors over time, one above the other, with a band behind each fault: an SVG document.
[[nodiscard]] std::string plot(const std::vector<Sample>& samples, const std::vector<FaultSpan>& faults);

} // namespace quillane::soak
