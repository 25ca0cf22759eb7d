// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/LoginItemService.hpp"
#include "support/Journal.hpp"

#include <functional>

namespace quillane::fakes {

/// A list of login items with at most one entry. The public fields stand for the actions of the system and the user.
class FakeLoginItemService final : public LoginItemService {
public:
    [[nodiscard]] LoginItemStatus status() const override {
        note(journal, "status of the login item");
        return current;
    }

    [[nodiscard]] bool enable() override {
        ++enablings;
        if (duringChange) {
            duringChange();
        }
        if (fails) {
            current = statusAfterFailure;
            return false;
        }
        current = LoginItemStatus::enabled;
        return true;
    }

    [[nodiscard]] bool disable() override {
        ++disablings;
        if (fails) {
            return false;
        }
        current = LoginItemStatus::notRegistered;
        return true;
    }

    [[nodiscard]] bool hasSettings() const override { return settings; }

    void openSettings() override { ++openings; }

    Journal* journal = nullptr; ///< none: nothing is recorded
    LoginItemStatus current = LoginItemStatus::notRegistered;
    LoginItemStatus statusAfterFailure = LoginItemStatus::notRegistered;
    bool fails = false;
    bool settings = true;
    std::function<void()> duringChange;
    int enablings = 0;
    int disablings = 0;
    int openings = 0;
};

} // namespace quillane::fakes
