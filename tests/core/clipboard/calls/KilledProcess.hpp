// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace quillane::core::testing {

enum class KillResult {
    killed,       ///< at the stop
    ended,        ///< before it got there
    failed,       ///< the steps threw, or the process ended in another way
    notPermitted, ///< the system does not let a program trace its child (ptrace(2))
};

/// Runs the steps in a child process that is killed (SIGKILL) at a stop of its system calls, counted from 0: each call
/// has two, before the system does anything and after it has. `prepare` runs in the child before the counting begins
/// and returns the steps that are counted.
[[nodiscard]] KillResult killAtStop(int stop, const std::function<std::function<void()>()>& prepare);

} // namespace quillane::core::testing
