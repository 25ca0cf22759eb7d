// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/ChordOutcome.hpp"
#include "core/localization/Desktop.hpp"
#include "platform/InputSources.hpp"

#include <functional>

namespace quillane {

/// Selects the next enabled input source and reports which one it is, or why there is none.
class InputSourceSwitcher {
public:
    explicit InputSourceSwitcher(InputSources& sources, core::Desktop desktop = {})
        : sources_(sources), desktop_(desktop) {}

    /// If the system has just switched through its own shortcut on the same keys, only reports the source.
    void switchToNext();

    /// Receives the outcome.
    std::function<void(const core::ChordOutcome&)> report;

private:
    [[nodiscard]] core::ChordOutcome switched();

    InputSources& sources_;
    core::Desktop desktop_; ///< the desktop that texts name
};

} // namespace quillane
