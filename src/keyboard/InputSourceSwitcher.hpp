// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/localization/Desktop.hpp"
#include "core/localization/LocalizedText.hpp"
#include "platform/InputSources.hpp"

#include <functional>

namespace quillane {

/// Selects the next enabled input source and says which one it is, or why there is none.
class InputSourceSwitcher {
public:
    explicit InputSourceSwitcher(InputSources& sources, core::Desktop desktop = {})
        : sources_(sources), desktop_(desktop) {}

    /// When the system has just switched by a shortcut of its own on the same keys, only says which source it is.
    void switchToNext();

    /// Given the outcome, for people.
    std::function<void(const core::LocalizedText&)> report;

private:
    [[nodiscard]] core::LocalizedText switched();

    InputSources& sources_;
    core::Desktop desktop_; ///< what the texts speak of
};

} // namespace quillane
