// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/keyboard/X11Keyboard.hpp"
#include "platform/linux/keyboard/X11RawInput.hpp"
#include "platform/linux/x11/X11Connection.hpp"

#include <tl/expected.hpp>

#include <memory>
#include <string>

namespace quillane {

/// What the X11 backend's members share. Made at start-up, before them; outlives them.
struct X11Session {
    std::unique_ptr<X11Connection> connection;
    std::unique_ptr<X11RawInput> input;
    std::unique_ptr<X11Keyboard> keyboard;

    /// Connects and reads the state of the keyboard; waits for the server. The error is one line for the user.
    [[nodiscard]] static tl::expected<X11Session, std::string> open(const std::string& display = {});
};

} // namespace quillane
