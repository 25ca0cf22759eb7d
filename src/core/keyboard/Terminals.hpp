// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <string_view>

namespace quillane::core {

/// Bundle identifiers of terminals on macOS, where nothing else distinguishes their text from that of an editor.
inline constexpr std::array<std::string_view, 7> terminals{
    "com.apple.Terminal",
    "com.github.wez.wezterm",
    "com.googlecode.iterm2",
    "com.mitchellh.ghostty",
    "net.kovidgoyal.kitty",
    "org.alacritty",
    "org.tabby",
};

/// Whether text in the application belongs to a program that runs in it, so that only keys can change it.
[[nodiscard]] constexpr bool isTerminal(std::string_view bundleID) {
    return std::ranges::find(terminals, bundleID) != terminals.end();
}

} // namespace quillane::core
