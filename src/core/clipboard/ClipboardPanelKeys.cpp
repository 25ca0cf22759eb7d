// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "core/clipboard/ClipboardPanelKeys.hpp"

#include <algorithm>
#include <array>

namespace quillane::core::clipboardPanelKeys {

namespace {

constexpr EventFlags modifiers = flags::shift | flags::control | flags::option | flags::command;

constexpr KeyCode returnKey = 36;
constexpr KeyCode keypadEnter = 76;
constexpr KeyCode deleteKey = 51; // the one that deletes backwards
constexpr KeyCode forwardDelete = 117;
constexpr KeyCode escape = 53;
constexpr KeyCode down = 125;
constexpr KeyCode up = 126;
constexpr std::array<KeyCode, 9> digits{18, 19, 20, 21, 23, 22, 26, 28, 25}; // 1 to 9, in the numbers' order

std::optional<Action> choiceAction(EventFlags held) {
    switch (held) {
    case 0:
        return ChooseSelected{Choice::paste};
    case flags::option:
        return ChooseSelected{Choice::copyOnly};
    case flags::shift:
        return ChooseSelected{Choice::plainPaste};
    default:
        return std::nullopt;
    }
}

std::optional<Action> commandAction(KeyCode keyCode) {
    const auto* const digit = std::ranges::find(digits, keyCode);
    if (digit == digits.end()) {
        return std::nullopt;
    }
    return PasteAt{static_cast<std::size_t>(digit - digits.begin())};
}

bool removes(KeyCode keyCode, EventFlags held, Desktop desktop) {
    return desktop == Desktop::macOS ? keyCode == deleteKey && held == flags::command
                                     : keyCode == forwardDelete && held == flags::shift;
}

} // namespace

std::optional<Action> action(KeyCode keyCode, EventFlags flags, Desktop desktop) {
    const auto held = flags & modifiers;
    if (removes(keyCode, held, desktop)) {
        return RemoveSelected{};
    }
    if (keyCode == returnKey || keyCode == keypadEnter) {
        return choiceAction(held);
    }
    if (held == flags::command) {
        return commandAction(keyCode);
    }
    if (held != 0) {
        return std::nullopt;
    }
    switch (keyCode) {
    case up:
        return Move{-1};
    case down:
        return Move{1};
    case escape:
        return Close{};
    default:
        return std::nullopt;
    }
}

std::string pasteKey(std::size_t index, Desktop desktop) {
    return (desktop == Desktop::macOS ? "⌘" : "Ctrl+") + std::to_string(index + 1);
}

} // namespace quillane::core::clipboardPanelKeys
