// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>

namespace quillane::core {

/// Makes a system call again as long as a signal interrupts it: file systems over a network, or of other programs, let
/// any call end with EINTR. `call` returns a negative number on an error.
template <typename Call>
[[nodiscard]] auto uninterrupted(const Call& call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

} // namespace quillane::core
