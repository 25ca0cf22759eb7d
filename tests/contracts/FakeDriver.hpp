// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "fakes/FakeDesktop.hpp"

#include <functional>

namespace quillane::testing {

/// With fakes everything has happened once the posted tasks have run.
class FakeDriver {
public:
    bool waitUntil(const std::function<bool()>& condition) {
        desktop_.settle();
        return condition();
    }

protected:
    fakes::FakeDesktop desktop_;
};

class FakeStatusItemDriver {
public:
    StatusItem& item() { return fake_; }

    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> result;
        std::ranges::transform(fake_.rows(), std::back_inserter(result), &MenuRow::title);
        return result;
    }

    [[nodiscard]] bool isChecked(const std::string& title) const { return fake_.row(title).checked; }

    void refuseNotices() { fake_.setRefusesNotices(); }

    void waitForAnswers() { fake_.failNotices(); }

    void choose(const std::string& title) {
        try {
            fake_.click(title);
        } catch (const std::logic_error&) { // it refuses what a menu would not let happen
        }
    }

private:
    fakes::FakeStatusItem fake_;
};

/// Polls the condition as an event loop would, but nothing happens meanwhile.
inline bool askAgain(const std::function<bool()>& condition) {
    bool holds = condition();
    for (int turn = 0; turn < 100 && !holds; ++turn) {
        holds = condition();
    }
    return holds;
}

} // namespace quillane::testing
