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

    /// Two sources by their identifiers.
    struct Way {
        std::string from;
        std::string to;
    };

    /// From the source that the text was typed in to the one of the other direction that was used last, as in
    /// `core::retyping::way`.
    [[nodiscard]] std::optional<Way> way(std::string_view text);

    /// The keys of an enabled source, until the sources change; nullptr for any other.
    [[nodiscard]] const core::KeyboardLayout* layout(std::string_view id);

private:
    /// The enabled sources whose layouts are known.
    struct Known {
        std::vector<std::string> ids;
        std::vector<core::retyping::Source> sources; ///< one for each
    };

    void noteCurrent();
    [[nodiscard]] const Known& byUse();
    [[nodiscard]] Known readSources() const;

    InputSources& sources_;
    std::vector<std::string> idsByUse_; ///< the source in effect first
    std::optional<Known> known_;        ///< in the same order; none: to be read
    core::Subscription changes_;
};

} // namespace quillane
