// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/WordDirectionAdapter.hpp"

#include "core/localization/Texts.hpp"
#include "direction/AX.hpp"
#include "direction/Editors.hpp"

#include <utility>

namespace quillane {

namespace {

using namespace std::chrono_literals;
namespace texts = core::texts;

constexpr auto step = 60ms;
constexpr int lastRun = 10;
constexpr std::size_t limit = 600;
constexpr ax::Search labelled{.limit = limit, .skipping = {}, .reading = ax::labelNames};

bool isButton(std::string_view role) {
    return role == "AXButton" || role == "AXCheckBox" || role == "AXRadioButton";
}

} // namespace

WordDirectionAdapter::WordDirectionAdapter(DirectionServices services, DirectionReport report)
    : services_(services), report_(std::move(report)) {}

void WordDirectionAdapter::apply(core::WritingDirection direction, const core::SupportedApplication& word) {
    const auto front = services_.workspace.frontmostApplication();
    if (!front || front->bundleID != word.bundleID) {
        return;
    }
    auto& accessibility = services_.accessibility;
    const auto application = accessibility.application(front->pid);
    accessibility.setMessagingTimeout(application, directionTimeout);
    const auto editor = ax::element(accessibility, application, "AXFocusedUIElement");
    const auto window = editor && isDirectionEditor(accessibility, *editor, word)
                            ? ax::element(accessibility, application, "AXFocusedWindow")
                            : std::nullopt;
    if (!window || !ax::isDescendant(accessibility, *editor, *window)) {
        report_(word.placementHint);
        return;
    }
    const Attempt attempt{application, *window, *editor, front->pid, direction, *word.labels, ++operation_};
    if (const auto button = directionButton(attempt)) {
        if (operation_ == attempt.operation &&
            ax::element(accessibility, application, "AXFocusedUIElement") == attempt.editor) {
            execute(*button, direction);
        }
    } else if (openHomeTab(attempt)) {
        scheduleSearch(attempt, 0);
    } else {
        report_(texts::openHomeTabInWord);
    }
}

std::optional<AXElement> WordDirectionAdapter::directionButton(const Attempt& attempt) const {
    const auto& label = attempt.labels.command(attempt.direction);
    return ax::find(services_.accessibility, attempt.window, labelled, [&](const ax::Candidate& candidate) {
        return isButton(candidate.role) && candidate.isLabelled(label);
    });
}

bool WordDirectionAdapter::openHomeTab(const Attempt& attempt) const {
    auto& accessibility = services_.accessibility;
    const auto ribbon = ax::find(accessibility, attempt.window, labelled, [&](const ax::Candidate& candidate) {
        return candidate.role == "AXTabGroup" && candidate.isLabelled(attempt.labels.bar);
    });
    const auto isHome = [&](const ax::Candidate& candidate) { return candidate.isLabelled(attempt.labels.opener); };
    const auto home = ribbon ? ax::find(accessibility, *ribbon, labelled, isHome) : std::nullopt;
    return home && ax::press(accessibility, *home);
}

void WordDirectionAdapter::scheduleSearch(const Attempt& attempt, int run) {
    services_.mainQueue.postAfter(step, [this, alive = lifetime_.watch(), attempt, run] {
        if (alive) {
            findAfterOpeningHome(attempt, run);
        }
    });
}

void WordDirectionAdapter::findAfterOpeningHome(const Attempt& attempt, int run) {
    if (operation_ != attempt.operation || !isFocused(attempt)) {
        return;
    }
    if (const auto button = directionButton(attempt)) {
        execute(*button, attempt.direction);
    } else if (run >= lastRun) {
        report_(texts::openHomeTabInWord);
    } else {
        scheduleSearch(attempt, run + 1);
    }
}

bool WordDirectionAdapter::isFocused(const Attempt& attempt) const {
    auto& accessibility = services_.accessibility;
    const auto front = services_.workspace.frontmostApplication();
    return front && front->pid == attempt.pid &&
           ax::element(accessibility, attempt.application, "AXFocusedUIElement") == attempt.editor &&
           ax::element(accessibility, attempt.application, "AXFocusedWindow") == attempt.window;
}

void WordDirectionAdapter::execute(const AXElement& button, core::WritingDirection direction) {
    if (ax::press(services_.accessibility, button)) {
        report_({texts::appliedDirectionInWord(core::rawValue(direction)), direction});
    } else {
        report_(texts::wordCannotChangeDirection);
    }
}

} // namespace quillane
