// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyEvents.hpp"
#include "platform/linux/X11Keyboard.hpp"

namespace quillane {

/// The modifiers as `X11Keyboard` keeps them, and keys of the server's own test device (XTEST extension), which go to
/// whatever has the keyboard.
class X11KeyEvents final : public KeyEvents {
public:
    X11KeyEvents(X11Connection& connection, const X11Keyboard& keyboard)
        : connection_(connection), keyboard_(keyboard) {}

    [[nodiscard]] core::EventFlags currentFlags() const override { return keyboard_.settledFlags(); }

    [[nodiscard]] bool postKey(pid_t pid, core::KeyCode keyCode, core::EventFlags flags) override;

private:
    [[nodiscard]] std::optional<xcb_keycode_t> keycodeFor(core::KeyCode keyCode) const;
    [[nodiscard]] std::optional<xcb_keycode_t> modifierKey(core::EventFlags flag) const;
    void fake(std::uint8_t event, xcb_keycode_t keycode);

    X11Connection& connection_;
    const X11Keyboard& keyboard_;
};

} // namespace quillane
