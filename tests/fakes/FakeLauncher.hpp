// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Launcher.hpp"

#include <vector>

namespace quillane::fakes {

/// Records what is started, and starts nothing.
class FakeLauncher final : public Launcher {
public:
    bool launch(const core::ProcessCommand& command) override {
        if (fails) {
            return false;
        }
        launched.push_back(command);
        return true;
    }

    bool fails = false;
    std::vector<core::ProcessCommand> launched;
};

} // namespace quillane::fakes
