// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyEvents.hpp"

namespace quillane::fakes {

/// A keyboard whose modifiers a test holds down.
class FakeKeyEvents final : public KeyEvents {
public:
    [[nodiscard]] core::EventFlags currentFlags() const override { return flags_; }

    void setCurrentFlags(core::EventFlags flags) { flags_ = flags; }

private:
    core::EventFlags flags_ = 0;
};

} // namespace quillane::fakes
