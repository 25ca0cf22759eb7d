// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/TypingHold.hpp"

#include "core/keyboard/KeyHold.hpp"

#include <utility>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr auto checkInterval = 20ms;
constexpr auto checkIntervalWithoutTyping = 200ms;

} // namespace

void TypingHold::begin(std::function<bool()> isMenuGone) {
    letGo();
    services_.eventTap.hold();
    if (services_.eventTap.isHolding()) {
        isMenuGone_ = std::move(isMenuGone);
    }
}

void TypingHold::end() {
    if (!isMenuGone_ || std::exchange(hasEnded_, true)) {
        return;
    }
    if (!isKeyWaiting_) {
        schedule();
    } else if (isOver()) {
        letGo();
    }
}

void TypingHold::note(core::UserInput input) {
    if (!isMenuGone_) {
        return;
    }
    if (input == core::UserInput::command || input == core::UserInput::menuRequest) {
        letGo(); // it may take the keyboard elsewhere
        return;
    }
    if (input != core::UserInput::typing || std::exchange(isKeyWaiting_, true)) {
        return;
    }
    lifetime_.restart();
    since_ = {};
    if (isOver()) {
        letGo();
    } else {
        schedule();
    }
}

void TypingHold::schedule() {
    const auto interval = isKeyWaiting_ ? checkInterval : checkIntervalWithoutTyping;
    services_.mainQueue.postAfter(interval, [this, alive = lifetime_.watch(), interval] {
        if (alive) {
            since_ += interval;
            step();
        }
    });
}

void TypingHold::step() {
    if (isOver()) {
        letGo();
    } else {
        schedule();
    }
}

bool TypingHold::isOver() const {
    return since_ >= core::keyHold::limit || (hasEnded_ && isMenuGone_());
}

void TypingHold::letGo() {
    if (std::exchange(isMenuGone_, nullptr)) {
        lifetime_.restart(); // no check follows
        hasEnded_ = isKeyWaiting_ = false;
        since_ = {};
        services_.eventTap.letGo();
    }
}

} // namespace quillane
