// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/diagnosis/SystemFacts.hpp"

namespace quillane {

/// Reads what only the platform knows about the system, the program's code and the session. Main thread.
class SystemInspector {
public:
    virtual ~SystemInspector() = default;

    /// Waits at most a second for services of the session. Starts none of them, and asks the user nothing.
    [[nodiscard]] virtual core::SystemFacts inspect() = 0;
};

} // namespace quillane
