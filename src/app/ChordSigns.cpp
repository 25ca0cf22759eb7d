// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/ChordSigns.hpp"

#include "app/CaretPlace.hpp"

#include <utility>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr auto timeToTurn = 60ms; // until the text, and with it the cursor, is on its other side

} // namespace

void ChordSigns::show(const core::ChordOutcome& outcome) {
    if (!makeView_ || !platform_.userDefaults->boolean(core::chordSignKey).value_or(true)) {
        return;
    }
    auto task = [this, alive = lifetime_.watch(), sign = core::chordSign(outcome), number = ++current_] {
        if (alive && number == current_) {
            present(sign);
        }
    };
    if (std::holds_alternative<core::WritingDirection>(outcome.effect)) {
        platform_.mainQueue->postAfter(timeToTurn, std::move(task));
    } else {
        platform_.mainQueue->post(std::move(task));
    }
}

void ChordSigns::present(const core::ChordSign& sign) {
    const auto front = platform_.workspace->frontmostApplication();
    const auto caret = front ? caretPlace(*platform_.accessibility, front->pid) : std::nullopt;
    const auto language = preferences_.state().language;
    if (!view_) {
        view_ = makeView_();
    }
    view_->present(sign, language, caret);
    platform_.mainQueue->postAfter(core::timeShown(sign, language),
                                   [this, alive = lifetime_.watch(), number = current_] {
                                       if (alive && number == current_) {
                                           dismiss();
                                       }
                                   });
}

void ChordSigns::dismiss() {
    ++current_;
    if (view_) {
        view_->dismiss();
    }
}

void ChordSigns::end() {
    dismiss();
    view_.reset();
    makeView_ = nullptr;
}

} // namespace quillane
