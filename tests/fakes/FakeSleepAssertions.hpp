// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/power/SleepAssertionClient.hpp"
#include "core/support/Listeners.hpp"
#include "support/Journal.hpp"

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

namespace quillane::fakes {

/// Power assertions that a test can read, and refuse.
class FakeSleepAssertions final : public core::SleepAssertionClient {
public:
    using Kind = core::SleepAssertionKind;

    [[nodiscard]] std::variant<core::SleepAssertionID, core::SleepAssertionError> create(Kind kind) override {
        note(journal, "hold awake");
        asked_.push_back(kind);
        if (const auto refused = refusals_.find(kind); refused != refusals_.end()) {
            return core::SleepAssertionError{refused->second};
        }
        held_[++last_] = kind;
        return last_;
    }

    void release(core::SleepAssertionID assertion) override {
        if (const auto found = held_.find(assertion); found != held_.end()) {
            note(journal, "let sleep");
            released_.push_back(found->second);
            held_.erase(found);
        }
    }

    core::Subscription
    onLost(std::function<void(core::SleepAssertionID, core::SleepAssertionError)> callback) override {
        return losses_.subscribe(std::move(callback));
    }

    /// The holder of the assertion of this kind has gone. Throws when none is held.
    void lose(Kind kind, std::int32_t code) {
        const auto found = std::ranges::find(held_, kind, &std::pair<const core::SleepAssertionID, Kind>::second);
        if (found == held_.end()) {
            throw std::logic_error("nothing to lose");
        }
        const auto assertion = found->first;
        held_.erase(found);
        losses_.notify(assertion, {code});
    }

    void refuse(Kind kind, std::int32_t code) { refusals_[kind] = code; }

    void allowAll() { refusals_.clear(); }

    /// What is currently held.
    [[nodiscard]] std::multiset<Kind> held() const {
        std::multiset<Kind> kinds;
        for (const auto& [assertion, kind] : held_) {
            kinds.insert(kind);
        }
        return kinds;
    }

    /// Every kind that was requested, and every kind that was released, in order.
    [[nodiscard]] const std::vector<Kind>& asked() const { return asked_; }

    [[nodiscard]] const std::vector<Kind>& released() const { return released_; }

    Journal* journal = nullptr; ///< none: nothing is recorded

private:
    core::Listeners<core::SleepAssertionID, core::SleepAssertionError> losses_;
    core::SleepAssertionID last_ = 0;
    std::map<core::SleepAssertionID, Kind> held_;
    std::map<Kind, std::int32_t> refusals_;
    std::vector<Kind> asked_;
    std::vector<Kind> released_;
};

} // namespace quillane::fakes
