// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/diagnosis/DiagnosisFacts.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace quillane::core {

enum class FindingState {
    ok,
    warning, ///< something that the user may want to change
    problem, ///< something that the program needs does not work
    notApplicable,
};

/// One line of a diagnosis, in English.
struct Finding {
    std::string_view name; ///< does not change between versions
    FindingState state{};
    std::string value;
    std::string advice; ///< what to do about a warning or a problem; else empty

    bool operator==(const Finding&) const = default;
};

/// The same lines in the same order, whatever the facts are.
[[nodiscard]] std::vector<Finding> diagnose(const DiagnosisFacts& facts);

/// Whether none of them is a problem.
[[nodiscard]] bool isHealthy(const std::vector<Finding>& findings);

} // namespace quillane::core
