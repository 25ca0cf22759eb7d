// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "standins/macos/Values.hpp"

#include <Carbon/InputSources.h>

#include <string>
#include <vector>

namespace quillane::standin {

/// The input sources of the user.
class InputSourceList {
public:
    /// What one source has: a property that is missing here is missing there.
    struct Properties {
        std::vector<std::pair<CFStringRef, Value>> values;
        bool isEnabled = true;
        bool isSelectCapable = true;
    };

    /// A keyboard source as the system lists it.
    [[nodiscard]] static Properties keyboard(std::string_view id, std::string_view name, std::vector<Value> languages);

    /// Adds a source at the end; the first one is the current one.
    void add(Properties properties);

    [[nodiscard]] CFArrayRef matching(CFDictionaryRef filter) const;
    [[nodiscard]] TISInputSourceRef copyCurrent() const;

    /// Whether the system lets it; then it announces the change.
    bool select(TISInputSourceRef source);

    /// The user selects the source with the identifier.
    void selectFromOutside(const std::string& id);

    bool isAnswering = true; ///< else there is neither a list nor a current source
    bool refusesAll = false; ///< every selection

    void settle();

private:
    std::vector<Value> sources_;
    Value current_;
};

} // namespace quillane::standin
