// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Launcher.hpp"

namespace quillane {

/// Starts programs in a session of their own, without the files and terminals of this one.
class QtLauncher final : public Launcher {
public:
    bool launch(const core::ProcessCommand& command) override;
};

} // namespace quillane
