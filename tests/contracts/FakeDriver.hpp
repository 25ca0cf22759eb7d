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

/// Polls the condition as an event loop would, but nothing happens meanwhile.
inline bool askAgain(const std::function<bool()>& condition) {
    bool holds = condition();
    for (int turn = 0; turn < 100 && !holds; ++turn) {
        holds = condition();
    }
    return holds;
}

} // namespace quillane::testing
