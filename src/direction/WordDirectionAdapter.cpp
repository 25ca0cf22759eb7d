// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/WordDirectionAdapter.hpp"

#include "core/direction/EditorContexts.hpp"
#include "core/direction/SupportedApplication.hpp"
#include "core/localization/Texts.hpp"
#include "direction/AX.hpp"

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

void WordDirectionAdapter::apply(core::WritingDirection direction) {
    const auto front = services_.workspace.frontmostApplication();
    if (!front || front->bundleID != core::traits(core::SupportedApplication::word).bundleID) {
        return;
    }
    auto& accessibility = services_.accessibility;
    const auto application = accessibility.application(front->pid);
    accessibility.setMessagingTimeout(application, directionPatience);
    const auto editor = ax::element(accessibility, application, "AXFocusedUIElement");
    const auto isPage = [&] {
        const auto role = ax::string(accessibility, *editor, "AXRole").value_or(std::string());
        const auto description = ax::string(accessibility, *editor, "AXDescription");
        return core::WordEditorContext{
            .role = role, .description = description, .writable = ax::isTextWritable(accessibility, *editor)}
            .isEligible();
    };
    const auto window = editor && isPage() ? ax::element(accessibility, application, "AXFocusedWindow") : std::nullopt;
    if (!window || !ax::isDescendant(accessibility, *editor, *window)) {
        report_(texts::placeCursorInWord);
        return;
    }
    const Attempt attempt{application, *window, *editor, front->pid, direction, ++operation_};
    if (const auto button = directionButton(attempt)) {
        if (operation_ == attempt.operation &&
            ax::element(accessibility, application, "AXFocusedUIElement") == attempt.editor) {
            execute(*button, direction);
        }
    } else if (openHomeTab(attempt.window)) {
        scheduleSearch(attempt, 0);
    } else {
        report_(texts::openHomeTabInWord);
    }
}

std::optional<AXElement> WordDirectionAdapter::directionButton(const Attempt& attempt) const {
    const std::string_view label =
        attempt.direction == core::WritingDirection::rightToLeft ? "Right-to-Left" : "Left-to-Right";
    return ax::find(services_.accessibility, attempt.window, labelled, [&](const ax::Candidate& candidate) {
        return isButton(candidate.role) && candidate.isLabelled(label);
    });
}

bool WordDirectionAdapter::openHomeTab(const AXElement& window) const {
    auto& accessibility = services_.accessibility;
    const auto ribbon = ax::find(accessibility, window, labelled, [](const ax::Candidate& candidate) {
        return candidate.role == "AXTabGroup" && candidate.isLabelled("ribbon");
    });
    const auto home = ribbon ? ax::find(accessibility, *ribbon, labelled,
                                        [](const ax::Candidate& candidate) { return candidate.isLabelled("Home"); })
                             : std::nullopt;
    return home && ax::press(accessibility, *home);
}

void WordDirectionAdapter::scheduleSearch(const Attempt& attempt, int run) {
    services_.mainQueue.postAfter(step, [this, alive = std::weak_ptr(alive_), attempt, run] {
        if (!alive.expired()) {
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
        report_(texts::appliedDirectionInWord(core::rawValue(direction)));
    } else {
        report_(texts::wordCannotChangeDirection);
    }
}

} // namespace quillane
