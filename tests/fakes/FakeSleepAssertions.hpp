// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/power/SleepAssertionClient.hpp"

#include <map>
#include <set>
#include <stdexcept>
#include <vector>

namespace quillane::fakes {

/// Power assertions that a test can read, and refuse.
class FakeSleepAssertions final : public core::SleepAssertionClient {
public:
    using Kind = core::SleepAssertionKind;

    [[nodiscard]] std::variant<core::SleepAssertionID, core::SleepAssertionError> create(Kind kind) override {
        asked_.push_back(kind);
        if (const auto refused = refusals_.find(kind); refused != refusals_.end()) {
            return core::SleepAssertionError{refused->second};
        }
        held_[++last_] = kind;
        return last_;
    }

    void release(core::SleepAssertionID assertion) override {
        if (const auto found = held_.find(assertion); found != held_.end()) {
            released_.push_back(found->second);
            held_.erase(found);
        }
    }

    void refuse(Kind kind, std::int32_t code) { refusals_[kind] = code; }

    void allowAll() { refusals_.clear(); }

    /// What is held now.
    [[nodiscard]] std::multiset<Kind> held() const {
        std::multiset<Kind> kinds;
        for (const auto& [assertion, kind] : held_) {
            kinds.insert(kind);
        }
        return kinds;
    }

    /// Every kind that was asked for, and every kind that was released, in order.
    [[nodiscard]] const std::vector<Kind>& asked() const { return asked_; }

    [[nodiscard]] const std::vector<Kind>& released() const { return released_; }

private:
    core::SleepAssertionID last_ = 0;
    std::map<core::SleepAssertionID, Kind> held_;
    std::map<Kind, std::int32_t> refusals_;
    std::vector<Kind> asked_;
    std::vector<Kind> released_;
};

} // namespace quillane::fakes
