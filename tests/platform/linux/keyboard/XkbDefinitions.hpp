// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/KeyboardLayout.hpp"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace quillane::testing {

/// A keyboard layout that this machine defines.
struct XkbDefinition {
    std::string name;            ///< as "il(phonetic)"
    core::KeyboardLayout layout; ///< as the backend reads it from the key symbols

    /// What applications insert for each stroke alone: libxkbcommon's state machine and Compose file. A dead key is
    /// followed by a space.
    std::map<core::KeyStroke, std::u32string> typed;
};

/// The definitions of one kind. A layout that is listed but does not compile fails the test.
struct XkbDefinitions {
    std::vector<XkbDefinition> rightToLeft;
    std::vector<XkbDefinition> english;
};

/// Every layout and variant in the registry whose main language is written from right to left, and every one for
/// English; only those of some names if any are given.
[[nodiscard]] XkbDefinitions readXkbDefinitions(const std::set<std::string>& names = {});

} // namespace quillane::testing
