// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/EventFlags.hpp"
#include "core/localization/Desktop.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <variant>

/// What the keys do while the panel of the clipboard history is open.
namespace quillane::core::clipboardPanelKeys {

/// Moves the selection by this many entries.
struct Move {
    int by = 0;
    bool operator==(const Move&) const = default;
};

/// What to do with the chosen entry.
enum class Choice {
    paste,
    copyOnly,   ///< to the pasteboard only
    plainPaste, ///< pastes its text without styles
};

/// Chooses the selected entry.
struct ChooseSelected {
    Choice choice{};
    bool operator==(const ChooseSelected&) const = default;
};

/// Pastes one of the first nine entries.
struct PasteAt {
    std::size_t index = 0; ///< from 0
    bool operator==(const PasteAt&) const = default;
};

struct RemoveSelected {
    bool operator==(const RemoveSelected&) const = default;
};

struct Close {
    bool operator==(const Close&) const = default;
};

using Action = std::variant<Move, ChooseSelected, PasteAt, RemoveSelected, Close>;

/// The action of a key press; none for a key that types in the search field. Of the flags, only Shift, Control, Option
/// and Command count. An entry is deleted by the keys that the desktop has for it: Command with the key that deletes
/// backwards on macOS, Shift with the one that deletes forwards on Linux, where the former deletes a word.
[[nodiscard]] std::optional<Action> action(KeyCode keyCode, EventFlags flags, Desktop desktop);

/// The keys of `PasteAt` as they are shown beside an entry: "⌘1", or "Ctrl+1" on Linux.
[[nodiscard]] std::string pasteKey(std::size_t index, Desktop desktop);

} // namespace quillane::core::clipboardPanelKeys
