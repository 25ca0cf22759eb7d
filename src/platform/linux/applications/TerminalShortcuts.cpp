// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/applications/TerminalShortcuts.hpp"

#include "platform/linux/applications/ApplicationIdentities.hpp"

#include <algorithm>
#include <array>

namespace quillane::terminalShortcuts {

namespace {

namespace flags = core::flags;

constexpr core::KeyCode keyV = 9;
constexpr core::KeyCode keyInsert = 114;

/// Lower-case identifiers of terminals that are older than the clipboard; nothing else distinguishes them.
constexpr std::array<std::string_view, 6> olderTerminals{"koi8rxterm", "mlterm", "rxvt", "urxvt", "uxterm", "xterm"};

} // namespace

ShortcutStyle styleOf(const ShortcutFocus& focus) {
    const bool isField = focus.role == "AXTextField";
    if (focus.subrole != "AXTerminal" && (!focus.inTerminal || isField)) {
        return ShortcutStyle::control;
    }
    const bool isOlder = std::ranges::find(olderTerminals, caseless(focus.application)) != olderTerminals.end();
    return isOlder ? ShortcutStyle::shiftInsert : ShortcutStyle::controlShift;
}

std::optional<KeyPress> pressed(ShortcutStyle style, const KeyPress& onMac) {
    if ((onMac.flags & flags::command) == 0) {
        return onMac;
    }
    const auto others = onMac.flags & ~flags::command;
    switch (style) {
    case ShortcutStyle::control:
        return KeyPress{onMac.keyCode, others | flags::control};
    case ShortcutStyle::controlShift:
        return KeyPress{onMac.keyCode, others | flags::control | flags::shift};
    case ShortcutStyle::shiftInsert:
        break;
    }
    return onMac == KeyPress{keyV, flags::command} ? std::optional(KeyPress{keyInsert, flags::shift}) : std::nullopt;
}

} // namespace quillane::terminalShortcuts
