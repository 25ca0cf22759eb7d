// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string>
#include <vector>

namespace quillane {

/// A keyboard layout in the terms of xkeyboard-config.
struct X11Layout {
    std::string name;    ///< for example "ara"
    std::string variant; ///< for example "mac", or empty

    auto operator<=>(const X11Layout&) const = default;
};

/// The entry of a layout in xkeyboard-config's registry (rules/evdev.xml); empty for one that it does not list.
struct X11LayoutFacts {
    X11Layout layout;
    std::string description;            ///< in English, for example "Arabic (Macintosh)"
    std::vector<std::string> languages; ///< BCP 47, the main one first
};

/// One layout to look up: by its name or, when that is empty, by its description.
struct X11LayoutQuery {
    X11Layout layout;
    std::string description;

    auto operator<=>(const X11LayoutQuery&) const = default;
};

/// Looks the layouts up, in the order of the queries. Reads the whole registry, which takes about 5 ms, and keeps
/// nothing of it.
[[nodiscard]] std::vector<X11LayoutFacts> lookUpLayouts(std::span<const X11LayoutQuery> queries);

} // namespace quillane
