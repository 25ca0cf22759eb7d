// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyEvents.hpp"

namespace quillane {

/// The state of the keyboard by CGEventSource (Quartz Event Services).
class MacKeyEvents final : public KeyEvents {
public:
    /// CGEventSourceFlagsState of the combined session state: what hardware and programs hold down together.
    [[nodiscard]] core::EventFlags currentFlags() const override;
};

} // namespace quillane
