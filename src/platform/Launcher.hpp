// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/permissions/ApplicationLocation.hpp"

namespace quillane {

/// Starts other programs. Main thread.
class Launcher {
public:
    virtual ~Launcher() = default;

    /// Starts a program that outlives this one. False when it cannot be started. Does not wait for it.
    virtual bool launch(const core::ProcessCommand& command) = 0;
};

} // namespace quillane
