// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SecureInput.hpp"

namespace quillane::fakes {

class FakeSecureInput final : public SecureInput {
public:
    [[nodiscard]] bool isEnabled() override { return enabled_; }

    void setEnabled(bool enabled) { enabled_ = enabled; }

private:
    bool enabled_ = false;
};

} // namespace quillane::fakes
