// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/UserInput.hpp"

#include <chrono>
#include <cstddef>

namespace quillane::core {

/// Counts the strokes whose characters stand before the text cursor, and never keeps which ones they were. Whatever may
/// have moved the cursor to other text starts the count again, and so does a rest of 30 seconds.
class TypedStrokes {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// A key was pressed.
    void notePress(KeyCode key, EventFlags flags, Time now);

    /// A click, another application or other keys may have moved the cursor.
    void reset() { count_ = 0; }

    [[nodiscard]] std::size_t count(Time now) const;

private:
    std::size_t count_ = 0;
    Time last_; ///< when a key typed or erased something
};

} // namespace quillane::core
