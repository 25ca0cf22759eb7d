// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyEvents.hpp"
#include "platform/linux/applications/TerminalShortcuts.hpp"
#include "platform/linux/keyboard/X11Keyboard.hpp"

#include <functional>
#include <optional>
#include <utility>

namespace quillane {

/// The modifiers as `X11Keyboard` keeps them, and keys of the server's own test device (XTEST extension), which go to
/// whatever has the keyboard. A shortcut is posted as the application expects it.
class X11KeyEvents final : public KeyEvents {
public:
    using StyleIn = std::function<ShortcutStyle(pid_t)>;

    /// Returns whether pasting the selected text pastes the pasteboard's; if it does not yet, it is called again.
    using OffersSelection = std::function<bool()>;

    X11KeyEvents(X11Connection& connection, const X11Keyboard& keyboard, StyleIn styleIn = {},
                 OffersSelection offersSelection = {})
        : connection_(connection),
          keyboard_(keyboard),
          styleIn_(std::move(styleIn)),
          offersSelection_(std::move(offersSelection)) {}

    [[nodiscard]] core::EventFlags currentFlags() const override { return keyboard_.settledFlags(); }

    [[nodiscard]] bool isKeyDown(core::KeyCode keyCode) const override;

    [[nodiscard]] bool goesToTerminal(pid_t pid) const override {
        return styleIn_ && styleIn_(pid) != ShortcutStyle::control;
    }

    [[nodiscard]] bool postKey(pid_t pid, core::KeyCode keyCode, core::EventFlags flags) override;

private:
    [[nodiscard]] std::optional<KeyPress> pressIn(pid_t pid, const KeyPress& onMac) const;
    [[nodiscard]] std::optional<xcb_keycode_t> keycodeFor(core::KeyCode keyCode) const;
    [[nodiscard]] std::optional<xcb_keycode_t> modifierKey(core::EventFlags flag) const;
    void fake(std::uint8_t event, xcb_keycode_t keycode);

    X11Connection& connection_;
    const X11Keyboard& keyboard_;
    StyleIn styleIn_;
    OffersSelection offersSelection_;
};

} // namespace quillane
