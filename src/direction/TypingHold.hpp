// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/UserInput.hpp"
#include "core/support/Lifetime.hpp"
#include "direction/DirectionServices.hpp"

#include <chrono>
#include <functional>

namespace quillane {

/// Keeps the user's typing from a menu that an attempt requests: holds the keys back from before the request until the
/// menu is gone, and hands them on to the text then, as `core::keyHold` says. Main thread.
class TypingHold {
public:
    explicit TypingHold(DirectionServices services) : services_(services) {}

    ~TypingHold() { letGo(); }

    TypingHold(const TypingHold&) = delete;
    TypingHold& operator=(const TypingHold&) = delete;

    /// A menu is about to be requested. `isMenuGone` says whether none is open or expected any more; it is asked after
    /// the attempt.
    void begin(std::function<bool()> isMenuGone);

    /// The attempt has ended. Its menu may still be open.
    void end();

    /// The user has pressed a key, clicked or scrolled.
    void note(core::UserInput input);

private:
    void schedule();
    void step();
    [[nodiscard]] bool isOver() const;
    void letGo();

    DirectionServices services_;
    std::function<bool()> isMenuGone_; ///< none while nothing is held back
    bool hasEnded_ = false;            ///< the attempt
    bool isKeyWaiting_ = false;
    std::chrono::milliseconds since_{}; ///< the first key that waits; before that, the end of the attempt
    core::Lifetime lifetime_;
};

} // namespace quillane
