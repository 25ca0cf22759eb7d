// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/LibreOfficeDirectionAdapter.hpp"

#include "core/localization/Texts.hpp"
#include "direction/AX.hpp"
#include "direction/Editors.hpp"

#include <array>
#include <utility>

namespace quillane {

namespace {

namespace texts = core::texts;

using namespace std::chrono_literals;

constexpr auto pause = 60ms; ///< between two attempts to reach LibreOffice
constexpr int lastRun = 24;
constexpr std::size_t limit = 240; ///< of the window, and of one toolbar

// The whole tree has thousands of elements.
constexpr std::array<std::string_view, 2> besideToolbars{"AXMenuBar", "AXToolbar"};

bool isDirectionButton(const ax::Candidate& candidate, const core::Labels& label) {
    return (candidate.role == "AXButton" || candidate.role == "AXCheckBox") && candidate.isLabelled(label);
}

} // namespace

LibreOfficeDirectionAdapter::LibreOfficeDirectionAdapter(DirectionServices services, DirectionReport report)
    : services_(services), report_(std::move(report)) {}

void LibreOfficeDirectionAdapter::apply(core::WritingDirection direction,
                                        const core::SupportedApplication& libreOffice) {
    const auto front = services_.workspace.frontmostApplication();
    if (!front || front->bundleID != libreOffice.bundleID) {
        return;
    }
    const auto application = services_.accessibility.application(front->pid);
    services_.accessibility.setMessagingTimeout(application, directionTimeout);
    begin({application, front->pid, direction, &libreOffice, ++operation_});
}

void LibreOfficeDirectionAdapter::cancelPending() {
    ++operation_;
}

void LibreOfficeDirectionAdapter::schedule(std::chrono::milliseconds delay, const Attempt& attempt,
                                           std::function<void()> step) {
    services_.mainQueue.postAfter(delay, [this, alive = lifetime_.watch(), attempt, step = std::move(step)] {
        if (!alive || operation_ != attempt.operation) {
            return;
        }
        const auto front = services_.workspace.frontmostApplication();
        if (front && front->pid == attempt.pid) {
            step();
        }
    });
}

void LibreOfficeDirectionAdapter::begin(Attempt attempt) {
    auto& accessibility = services_.accessibility;
    const auto editor = ax::element(accessibility, attempt.application, "AXFocusedUIElement");
    const auto window = editor ? ax::element(accessibility, attempt.application, "AXFocusedWindow") : std::nullopt;
    if (window) {
        const auto title = ax::string(accessibility, *window, "AXTitle").value_or(std::string());
        attempt.program = &core::programOfWindow(*attempt.program, title);
    }
    if (!window || !isDirectionEditor(accessibility, *editor, *attempt.program) ||
        !ax::isDescendant(accessibility, *editor, *window)) {
        refuse(attempt, attempt.program->placementHint);
        return;
    }
    const ax::Search toolbars{.limit = limit, .skipping = besideToolbars, .reading = {}};
    search(attempt, std::make_shared<Way>(Way{*editor, ax::TreeSearch(*window, toolbars), {}, std::nullopt}));
}

void LibreOfficeDirectionAdapter::search(const Attempt& attempt, const std::shared_ptr<Way>& way) {
    if (!way->toolbar && !way->toolbars.empty()) {
        way->toolbar.emplace(way->toolbars.front(),
                             ax::Search{.limit = limit, .skipping = {}, .reading = ax::labelNames});
        way->toolbars.erase(way->toolbars.begin());
    }
    const auto isButton = [&](const ax::Candidate& candidate) {
        return isDirectionButton(candidate, attempt.program->labels->command(attempt.direction));
    };
    const auto collect = [&](const ax::Candidate& candidate) {
        if (candidate.role == "AXToolbar") {
            way->toolbars.push_back(candidate.element);
        }
        return false;
    };
    auto& accessibility = services_.accessibility;
    using State = ax::TreeSearch::State;
    const auto state =
        way->toolbar ? way->toolbar->step(accessibility, isButton) : way->window.step(accessibility, collect);
    if (state == State::found) {
        press(attempt, way->editor, *way->toolbar->result());
    } else if (state == State::unanswered || (state == State::notFound && !way->toolbar)) {
        refuse(attempt, texts::showFormattingToolbar(attempt.program->displayName));
    } else {
        if (state == State::notFound) {
            way->toolbar.reset();
        }
        schedule(0ms, attempt, [this, attempt, way] { search(attempt, way); });
    }
}

void LibreOfficeDirectionAdapter::press(const Attempt& attempt, const AXElement& editor, const AXElement& button) {
    auto& accessibility = services_.accessibility;
    if (ax::element(accessibility, attempt.application, "AXFocusedUIElement") != editor) {
        refuse(attempt, texts::focusMovedToAnotherField);
        return;
    }
    const auto result = ax::flag(accessibility, button, "AXEnabled") == false
                            ? AXActionResult::failed
                            : accessibility.performAction(button, "AXPress");
    switch (result) {
    case AXActionResult::done:
        report_({texts::appliedDirection(core::rawValue(attempt.direction), attempt.program->displayName),
                 attempt.direction});
        break;
    case AXActionResult::cannotComplete:
        confirm(attempt);
        break;
    case AXActionResult::failed:
        refuse(attempt, texts::cannotChangeDirection(attempt.program->displayName));
    }
}

/// LibreOffice handles requests in order: once it answers a later one, the button has been pressed.
void LibreOfficeDirectionAdapter::confirm(Attempt attempt) {
    if (answers(attempt)) {
        report_({texts::appliedDirection(core::rawValue(attempt.direction), attempt.program->displayName),
                 attempt.direction});
    } else if (attempt.run == lastRun) {
        report_(texts::cannotChangeDirection(attempt.program->displayName));
    } else {
        ++attempt.run;
        schedule(pause, attempt, [this, attempt] { confirm(attempt); });
    }
}

/// Reports the reason, or tries again when LibreOffice did not answer and so has not given one.
void LibreOfficeDirectionAdapter::refuse(Attempt attempt, const core::LocalizedText& reason) {
    if (attempt.run == lastRun || answers(attempt)) {
        report_(reason);
    } else {
        ++attempt.run;
        schedule(pause, attempt, [this, attempt] { begin(attempt); });
    }
}

bool LibreOfficeDirectionAdapter::answers(const Attempt& attempt) const {
    return ax::string(services_.accessibility, attempt.application, "AXRole").has_value();
}

} // namespace quillane
