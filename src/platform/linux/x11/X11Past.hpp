// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <utility>

#include <xcb/xcb.h>

namespace quillane {

/// What a value was before each of its last changes, by times of the X server: milliseconds that wrap around (X
/// protocol, TIMESTAMP). Events of two connections arrive in any order; their times tell which came first.
template <typename Value>
class X11Past {
public:
    static constexpr std::size_t maximumChanges = 32;
    static constexpr std::int32_t longest = 60'000; ///< in milliseconds; a later question is about the present

    /// The value changes, and was `before` until now.
    void change(xcb_timestamp_t now, Value before) {
        changes_.push_back({now, std::move(before)});
        if (changes_.size() > maximumChanges) {
            changes_.pop_front();
        }
    }

    /// The value at that time; null if it is still the present one.
    [[nodiscard]] const Value* at(xcb_timestamp_t time) const {
        const auto found = std::ranges::find_if(changes_, [&](const Change& change) {
            const auto since = static_cast<std::int32_t>(change.until - time);
            return since > 0 && since < longest;
        });
        return found == changes_.end() ? nullptr : &found->before;
    }

private:
    struct Change {
        xcb_timestamp_t until;
        Value before;
    };

    std::deque<Change> changes_; ///< the newest last
};

} // namespace quillane
