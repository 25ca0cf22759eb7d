// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Accessibility.hpp"
#include "platform/InputSources.hpp"
#include "platform/Workspace.hpp"

#include <string>
#include <vector>

#include <sys/types.h>

namespace quillane {

/// The current input source, for display and for the rules.
struct InputSourceSummary {
    std::string name;
    bool isRTL = false;

    bool operator==(const InputSourceSummary&) const = default;
};

/// What temporary English needs to know: the input source, and whether typing goes into editable text.
class RTLInput {
public:
    RTLInput(InputSources& sources, Accessibility& accessibility, const Workspace& workspace)
        : sources_(sources), accessibility_(accessibility), workspace_(workspace) {}

    /// Without a current source: no name, not right-to-left.
    [[nodiscard]] InputSourceSummary current() const;

    /// Whether the focused element of the process accepts typed text. Each question waits at most 15 ms for the other
    /// application, because this runs inside the event tap; any failure means no.
    [[nodiscard]] bool hasEditableFocus(pid_t pid) const;

private:
    /// Whether languages are right-to-left. The last answer is cached: the question comes with each letter typed with
    /// Shift, while the source rarely changes.
    struct KnownDirection {
        std::vector<std::string> languages;
        bool isRTL = false;
    };

    mutable KnownDirection known_;

    InputSources& sources_;
    Accessibility& accessibility_;
    const Workspace& workspace_;
};

} // namespace quillane
