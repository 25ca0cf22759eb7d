// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyEvents.hpp"
#include "platform/linux/X11Keyboard.hpp"

namespace quillane {

/// The modifiers as `X11Keyboard` keeps them.
class X11KeyEvents final : public KeyEvents {
public:
    explicit X11KeyEvents(const X11Keyboard& keyboard) : keyboard_(keyboard) {}

    [[nodiscard]] core::EventFlags currentFlags() const override { return keyboard_.settledFlags(); }

private:
    const X11Keyboard& keyboard_;
};

} // namespace quillane
