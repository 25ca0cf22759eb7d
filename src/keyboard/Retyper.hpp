// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/Retyping.hpp"
#include "platform/InputSources.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillane {

/// Retypes text with the layouts of the user's input sources, in the order in which they were used. Main thread.
class Retyper {
public:
    explicit Retyper(InputSources& sources);

    /// Follows which sources are used from now on.
    void start();

    /// The text as the same keys type it in the source of the other direction that was used last; none without such a
    /// source, or when the text would stay as it is. The first call after a change of sources reads their keys.
    [[nodiscard]] std::optional<std::string> retyped(std::string_view text);

private:
    void noteCurrent();
    [[nodiscard]] std::vector<core::retyping::Source> readSources() const;

    InputSources& sources_;
    std::vector<std::string> idsByUse_;                               ///< the source in effect first
    std::optional<std::vector<core::retyping::Source>> sourcesByUse_; ///< none: to be read
    core::Subscription changes_;
};

} // namespace quillane
