// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/SupportedApplication.hpp"
#include "core/direction/WritingDirection.hpp"
#include "core/keyboard/UserInput.hpp"

namespace quillane {

/// Sets the direction of the paragraph at the cursor in one manner of applications, and reports how it ended. Main
/// thread; every call returns at once.
class DirectionAdapter {
public:
    DirectionAdapter() = default;
    virtual ~DirectionAdapter() = default;

    DirectionAdapter(const DirectionAdapter&) = delete;
    DirectionAdapter& operator=(const DirectionAdapter&) = delete;

    /// Starts an attempt in the application, which must be in front. The application is a row of the table.
    virtual void apply(core::WritingDirection direction, const core::SupportedApplication& application) = 0;

    /// Abandons the current attempt. What has been pressed stays pressed.
    virtual void cancelPending() = 0;

    /// The same for a key, click or scroll of the user.
    virtual void interrupt([[maybe_unused]] core::UserInput input) { cancelPending(); }
};

} // namespace quillane
