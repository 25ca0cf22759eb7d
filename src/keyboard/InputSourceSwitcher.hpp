// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/localization/Desktop.hpp"
#include "core/localization/LocalizedText.hpp"
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

    /// Receives the outcome, as a text for the user.
    std::function<void(const core::LocalizedText&)> report;

private:
    [[nodiscard]] core::LocalizedText switched();

    InputSources& sources_;
    core::Desktop desktop_; ///< the desktop that texts name
};

} // namespace quillane
