// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/LoginItemStatus.hpp"

namespace quillane {

using core::LoginItemStatus;

/// This program's place in the desktop's list of programs that start at login. Main thread; calls are short and
/// synchronous.
class LoginItemService {
public:
    virtual ~LoginItemService() = default;

    [[nodiscard]] virtual LoginItemStatus status() const = 0;

    /// Adds this program. False on a failure; that includes an approval that is still missing.
    [[nodiscard]] virtual bool enable() = 0;

    /// Removes it from the list. False on a failure.
    [[nodiscard]] virtual bool disable() = 0;

    /// Whether the desktop has a page of settings for the list, and how to show it.
    [[nodiscard]] virtual bool hasSettings() const = 0;
    virtual void openSettings() = 0;
};

} // namespace quillane
