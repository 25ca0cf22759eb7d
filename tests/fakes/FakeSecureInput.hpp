// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SecureInput.hpp"

namespace quillane::fakes {

class FakeSecureInput final : public SecureInput {
public:
    [[nodiscard]] bool isEnabled() override { return known_ && enabled_; }

    [[nodiscard]] bool isKnown() override { return known_; }

    void setEnabled(bool enabled) { enabled_ = enabled; }

    /// Whether the application in front says what has the focus there.
    void setKnown(bool known) { known_ = known; }

private:
    bool enabled_ = false;
    bool known_ = true;
};

} // namespace quillane::fakes
