// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/OutlookAdapter.hpp"

#include "core/localization/Texts.hpp"
#include "direction/AX.hpp"
#include "direction/Editors.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace quillane {

namespace {

using namespace std::chrono_literals;
namespace texts = core::texts;

constexpr auto step = 80ms;
constexpr int lastRun = 7;
constexpr std::size_t limit = 240;
constexpr ax::Search labelled{.limit = limit, .skipping = {}, .reading = ax::labelNames};

} // namespace

OutlookAdapter::OutlookAdapter(DirectionServices services, const DirectionReport& report)
    : services_(services), report_(report), subject_(services, report) {}

void OutlookAdapter::apply(core::WritingDirection direction, const core::SupportedApplication& outlook) {
    const auto front = services_.workspace.frontmostApplication();
    if (!front || front->bundleID != outlook.bundleID) {
        return;
    }
    auto& accessibility = services_.accessibility;
    const auto application = accessibility.application(front->pid);
    accessibility.setMessagingTimeout(application, directionTimeout);
    const auto focused = ax::element(accessibility, application, "AXFocusedUIElement");
    if (focused && isSubjectLine(accessibility, *focused, outlook)) {
        subject_.apply(direction, *outlook.subject);
    } else if (focused && isDirectionEditor(accessibility, *focused, outlook)) {
        applyInBody({application, *focused, front->pid, direction, *outlook.labels});
    } else {
        report_(outlook.placementHint);
    }
}

void OutlookAdapter::cancelPending() {
    cancelPopover();
    subject_.cancelPending();
}

void OutlookAdapter::interrupt(core::UserInput input) {
    cancelPopover();
    subject_.interrupt(input);
}

void OutlookAdapter::cancelPopover() {
    if (overflowPending_) {
        cancelled_ = true;
    }
}

void OutlookAdapter::applyInBody(const Attempt& attempt) {
    auto& accessibility = services_.accessibility;
    const auto window = ax::element(accessibility, attempt.application, "AXFocusedWindow");
    const auto toolbar =
        window ? ax::find(accessibility, *window, labelled,
                          [&](const ax::Candidate& candidate) { return candidate.isLabelled(attempt.labels.bar); })
               : std::nullopt;
    if (!toolbar) {
        report_(texts::formattingToolbarNotFound);
    } else if (const auto button = directionButton(*toolbar, attempt)) {
        press(*button, attempt.direction);
    } else {
        openOverflow(*toolbar, attempt);
    }
}

std::optional<AXElement> OutlookAdapter::directionButton(const AXElement& in, const Attempt& attempt) const {
    const auto& label = attempt.labels.command(attempt.direction);
    return ax::find(services_.accessibility, in, labelled, [&](const ax::Candidate& candidate) {
        return candidate.role == "AXButton" && candidate.isLabelled(label);
    });
}

void OutlookAdapter::openOverflow(const AXElement& toolbar, Attempt attempt) {
    auto& accessibility = services_.accessibility;
    const auto overflow = ax::find(accessibility, toolbar, labelled, [&](const ax::Candidate& candidate) {
        return candidate.role == "AXButton" && candidate.isLabelled(attempt.labels.opener);
    });
    if (!overflow) {
        report_(texts::directionButtonsNotFoundInOutlook);
    } else if (!ax::press(accessibility, *overflow)) {
        report_(texts::couldNotOpenFormattingOptions);
    } else {
        overflowPending_ = true;
        cancelled_ = false;
        attempt.operation = ++operation_;
        schedule(attempt, 0);
    }
}

void OutlookAdapter::schedule(const Attempt& attempt, int run) {
    services_.mainQueue.postAfter(step, [this, alive = lifetime_.watch(), attempt, run] {
        if (alive) {
            pressOverflowButton(attempt, run);
        }
    });
}

std::optional<AXElement> OutlookAdapter::popover(const AXElement& application) const {
    auto& accessibility = services_.accessibility;
    const auto windows = ax::children(accessibility, application);
    constexpr std::array<std::string_view, 2> names{"AXRole", "AXIdentifier"};
    const auto read = accessibility.attributesOfEach(windows, names);
    const auto found = std::ranges::find_if(read, [](const auto& values) {
        const auto* identifier = values ? std::get_if<std::string>(&values->at(1)) : nullptr;
        return identifier != nullptr && identifier->starts_with("RoosterToolbarPopoverWindow(") &&
               values->front() == AXValue(std::string("AXWindow"));
    });
    return found != read.end() ? std::optional(windows.at(static_cast<std::size_t>(found - read.begin())))
                               : std::nullopt;
}

void OutlookAdapter::pressOverflowButton(const Attempt& attempt, int run) {
    if (operation_ != attempt.operation) {
        return;
    }
    auto& accessibility = services_.accessibility;
    const auto end = [&](const core::LocalizedText& text) {
        overflowPending_ = false;
        report_(text);
    };
    if (cancelled_) {
        end(texts::directionChangeCancelled);
        return;
    }
    const auto window = popover(attempt.application);
    const auto front = services_.workspace.frontmostApplication();
    const auto focused = ax::element(accessibility, attempt.application, "AXFocusedUIElement");
    const bool isHere = front && front->pid == attempt.pid && focused &&
                        (*focused == attempt.editor || (window && ax::isDescendant(accessibility, *focused, *window)));
    if (!isHere) {
        end(texts::directionChangeCancelled);
        return;
    }
    if (const auto button = window ? directionButton(*window, attempt) : std::nullopt) {
        overflowPending_ = false;
        press(*button, attempt.direction);
    } else if (run >= lastRun) {
        end(texts::directionButtonNotInMenu);
    } else {
        schedule(attempt, run + 1);
    }
}

void OutlookAdapter::press(const AXElement& button, core::WritingDirection direction) {
    if (ax::press(services_.accessibility, button)) {
        report_({texts::appliedDirectionInOutlook(core::rawValue(direction)), direction});
    } else {
        report_(texts::outlookDidNotApply);
    }
}

} // namespace quillane
