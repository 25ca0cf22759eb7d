// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/power/SleepAssertionClient.hpp"

namespace quillane {

/// The assertions of IOKit's power management, under the name that `pmset -g assertions` shows.
class MacSleepAssertions final : public core::SleepAssertionClient {
public:
    [[nodiscard]] std::variant<core::SleepAssertionID, core::SleepAssertionError>
    create(core::SleepAssertionKind kind) override;
    void release(core::SleepAssertionID assertion) override;
};

} // namespace quillane
