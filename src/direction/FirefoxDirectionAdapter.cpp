// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/FirefoxDirectionAdapter.hpp"

#include "core/localization/Texts.hpp"
#include "direction/AX.hpp"
#include "direction/Editors.hpp"
#include "direction/TextPlace.hpp"

#include <algorithm>
#include <utility>

namespace quillane {

namespace {

using namespace std::chrono_literals;
namespace texts = core::texts;

constexpr auto interval = 60ms;
constexpr int lastReading = 8; ///< Firefox works out where its text is when it is asked for the first time
constexpr int lastRun = 24;
constexpr std::size_t windowLimit = 500;
constexpr std::size_t menuLimit = 120;

/// Says how the browser's command is turned on.
core::LocalizedText turnOnCommand() {
    return texts::turnOnDirectionInFirefox("bidi.browser.ui", "about:config");
}

} // namespace

FirefoxDirectionAdapter::FirefoxDirectionAdapter(DirectionServices services, DirectionReport report)
    : services_(services), report_(std::move(report)), abandonedMenu_(services) {}

void FirefoxDirectionAdapter::apply(core::WritingDirection direction, const core::SupportedApplication& application) {
    const auto front = services_.workspace.frontmostApplication();
    if (current_ || !front || front->bundleID != application.bundleID) {
        return;
    }
    auto& accessibility = services_.accessibility;
    const auto element = accessibility.application(front->pid);
    accessibility.setMessagingTimeout(element, directionTimeout);
    const auto editor = ax::element(accessibility, element, "AXFocusedUIElement");
    if (!editor || !isDirectionEditor(accessibility, *editor, application)) {
        report_(withoutCommand_ == front->pid ? turnOnCommand() : core::LocalizedText(application.placementHint));
        return;
    }
    abandonedMenu_.forget();
    current_.emplace(Attempt{&application, element, *editor, front->pid, direction, ++operation_});
    readDirection(*current_);
}

void FirefoxDirectionAdapter::cancelPending() {
    ++operation_;
    if (current_) {
        closeMenu(*current_);
        current_.reset();
    }
}

void FirefoxDirectionAdapter::interrupt(core::UserInput input) {
    const bool isTaken = current_ && current_->menu && input != core::UserInput::typing && menu(*current_);
    if (isTaken) {
        current_->menu.reset(); // it is the user's
    }
    cancelPending();
    abandonedMenu_.note(input);
}

void FirefoxDirectionAdapter::readDirection(Attempt attempt) {
    const auto now = directionOfText(services_.accessibility, attempt.editor);
    if (now == attempt.direction) {
        finish({texts::appliedDirection(core::rawValue(attempt.direction), attempt.browser->displayName),
                attempt.direction});
    } else if (now) {
        attempt.run = 0;
        findCommand(std::move(attempt));
    } else if (attempt.run < lastReading) {
        again(std::move(attempt), &FirefoxDirectionAdapter::readDirection);
    } else {
        finish(texts::cursorPositionNotExposed);
    }
}

void FirefoxDirectionAdapter::findCommand(Attempt attempt) {
    auto& accessibility = services_.accessibility;
    const auto window = ax::element(accessibility, attempt.application, "AXFocusedWindow");
    auto bar = ax::element(accessibility, attempt.application, "AXMenuBar"); // macOS has one for all windows
    if (!bar && window) {
        bar = ax::find(accessibility, *window, {.limit = windowLimit, .skipping = {}, .reading = {}},
                       [](const ax::Candidate& candidate) { return candidate.role == "AXMenuBar"; });
    }
    const auto isMenu = [&](const ax::Candidate& candidate) {
        return candidate.isLabelled(attempt.browser->labels->bar);
    };
    const auto found =
        bar ? ax::find(accessibility, *bar, {.limit = menuLimit, .skipping = {}, .reading = ax::labelNames}, isMenu)
            : std::nullopt;
    if (!found) {
        finish(texts::noParagraphDirectionCommand);
    } else if (const auto item = command(*found, attempt)) {
        press(std::move(attempt), *item);
    } else if (!ax::children(accessibility, *found).empty()) {
        explain(attempt);
    } else if (!ax::press(accessibility, *found)) {
        finish(texts::cannotOpenDirectionMenu(attempt.browser->displayName));
    } else {
        attempt.menu = found;
        current_->menu = found;
        again(std::move(attempt), &FirefoxDirectionAdapter::awaitMenu);
    }
}

void FirefoxDirectionAdapter::awaitMenu(Attempt attempt) {
    const auto item = command(*attempt.menu, attempt);
    if (item && menu(attempt)) {
        press(std::move(attempt), *item);
    } else if (!item && menu(attempt) && !ax::children(services_.accessibility, *attempt.menu).empty()) {
        closeMenu(attempt);
        explain(attempt);
    } else if (attempt.run < lastRun) {
        again(std::move(attempt), &FirefoxDirectionAdapter::awaitMenu);
    } else {
        closeMenu(attempt);
        finish(texts::directionMenuUnavailable);
    }
}

/// Presses the command, which closes its menu if that is open.
void FirefoxDirectionAdapter::press(Attempt attempt, const AXElement& command) {
    if (!ax::press(services_.accessibility, command)) {
        closeMenu(attempt);
        finish(texts::directionNotApplied);
        return;
    }
    attempt.menu.reset();
    attempt.run = 0;
    current_->menu.reset();
    again(std::move(attempt), &FirefoxDirectionAdapter::confirm);
}

void FirefoxDirectionAdapter::confirm(Attempt attempt) {
    if (directionOfText(services_.accessibility, attempt.editor) == attempt.direction) {
        finish({texts::appliedDirection(core::rawValue(attempt.direction), attempt.browser->displayName),
                attempt.direction});
    } else if (attempt.run < lastRun) {
        again(std::move(attempt), &FirefoxDirectionAdapter::confirm);
    } else {
        finish(texts::directionNotApplied);
    }
}

void FirefoxDirectionAdapter::again(Attempt attempt, void (FirefoxDirectionAdapter::*step)(Attempt)) {
    ++attempt.run;
    services_.mainQueue.postAfter(interval, [this, alive = lifetime_.watch(), attempt, step] {
        if (!alive || operation_ != attempt.operation) {
            return;
        }
        const auto front = services_.workspace.frontmostApplication();
        if (!front || front->pid != attempt.pid) {
            cancelPending();
            return;
        }
        (this->*step)(attempt);
    });
}

/// The menu that was opened, while it is open. In a menu bar that is shown, its title is visible all the time.
std::optional<AXElement> FirefoxDirectionAdapter::menu(const Attempt& attempt) const {
    const bool isOpen = attempt.menu && ax::flag(services_.accessibility, *attempt.menu, "AXExpanded") == true;
    return isOpen ? attempt.menu : std::nullopt;
}

std::optional<AXElement> FirefoxDirectionAdapter::command(const AXElement& menu, const Attempt& attempt) const {
    const auto& label = attempt.browser->labels->rightToLeft; // one command for both directions
    return ax::find(services_.accessibility, menu, {.limit = menuLimit, .skipping = {}, .reading = ax::labelNames},
                    [&](const ax::Candidate& candidate) { return candidate.isLabelled(label); });
}

void FirefoxDirectionAdapter::closeMenu(const Attempt& attempt) {
    if (attempt.menu) {
        // After a click nothing tells the menu from one that the user has opened.
        const auto isRecognized = [](const AXElement&) { return false; };
        const auto find = [this, attempt] { return menu(attempt); };
        abandonedMenu_.close({attempt.application, attempt.pid, isRecognized, find}, menu(attempt));
    }
}

/// Firefox goes on to report the menu as focused after it has been closed, so that the next chord finds no editor.
void FirefoxDirectionAdapter::explain(const Attempt& attempt) {
    withoutCommand_ = attempt.pid;
    finish(turnOnCommand());
}

void FirefoxDirectionAdapter::finish(const core::ChordOutcome& outcome) {
    current_.reset();
    report_(outcome);
}

} // namespace quillane
