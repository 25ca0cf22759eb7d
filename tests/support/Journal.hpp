// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quillane::fakes {

/// The calls that the fakes of a desktop received, in order, for tests of an order. A fake writes into the one that it
/// points at and into none at first.
class Journal {
public:
    void note(std::string call) { calls_.push_back(std::move(call)); }

    /// The calls since the last time.
    [[nodiscard]] std::vector<std::string> taken() { return std::exchange(calls_, {}); }

private:
    std::vector<std::string> calls_;
};

inline void note(Journal* journal, std::string call) {
    if (journal != nullptr) {
        journal->note(std::move(call));
    }
}

} // namespace quillane::fakes
