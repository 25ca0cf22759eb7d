// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyEvents.hpp"

namespace quillane {

/// The keyboard through Quartz Event Services.
class MacKeyEvents final : public KeyEvents {
public:
    /// CGEventSourceFlagsState of the combined session state: what hardware and programs hold down together.
    [[nodiscard]] core::EventFlags currentFlags() const override;
    [[nodiscard]] bool isKeyDown(core::KeyCode keyCode) const override;

    /// CGEventPostToPid: events that carry their modifiers, whatever the user holds.
    [[nodiscard]] bool postKey(pid_t pid, core::KeyCode keyCode, core::EventFlags flags) override;
};

} // namespace quillane
