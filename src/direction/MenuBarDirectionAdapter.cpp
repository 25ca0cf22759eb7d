// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/MenuBarDirectionAdapter.hpp"

#include "core/direction/DirectionTarget.hpp"
#include "core/direction/ParagraphCommand.hpp"
#include "core/localization/Texts.hpp"
#include "direction/Editors.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include <unistd.h>

namespace quillane {

namespace {

using namespace std::chrono_literals;
using core::WritingDirection;
namespace paragraphCommand = core::paragraphCommand;

constexpr std::size_t menuBarLimit = 2000; ///< a menu bar may list bookmarks, documents and fonts
constexpr int stepsAtOnce = 4;
constexpr int maximumAttempts = 3;

constexpr std::array<std::string_view, 3> itemAttributes{"AXIdentifier", "AXTitle", "AXDescription"};

} // namespace

MenuBarDirectionAdapter::MenuBarDirectionAdapter(DirectionServices services, DirectionReport report)
    : services_(services), report_(std::move(report)) {}

void MenuBarDirectionAdapter::lookUpFront() {
    const auto front = services_.workspace.frontmostApplication();
    if (!front || front->pid == getpid() || (front->bundleID && core::hasDirectionCommands(*front->bundleID))) {
        return;
    }
    const auto* before = find(*front);
    if (before != nullptr && (!before->isUnanswered || before->attempts == maximumAttempts)) {
        return;
    }
    const int attempts = before != nullptr ? before->attempts + 1 : 1;
    std::erase_if(known_, [&](const auto& entry) { return !services_.workspace.isRunning(entry.first); });
    known_.insert_or_assign(front->pid, Known{.bundleID = front->bundleID, .commands = {}, .attempts = attempts});
    services_.mainQueue.post([this, alive = lifetime_.watch(), pid = front->pid] {
        if (alive) {
            beginLookup(pid);
        }
    });
}

void MenuBarDirectionAdapter::beginLookup(pid_t pid) {
    auto& accessibility = services_.accessibility;
    const auto application = accessibility.application(pid);
    accessibility.setMessagingTimeout(application, directionTimeout);
    const auto menuBar = ax::element(accessibility, application, "AXMenuBar");
    if (!menuBar) {
        noteUnanswered(pid);
        return;
    }
    const ax::Search search{.limit = menuBarLimit, .skipping = {}, .reading = itemAttributes};
    continueLookup(
        std::make_shared<Lookup>(Lookup{pid, ax::TreeSearch(*menuBar, search), std::nullopt, std::nullopt, {}}));
}

void MenuBarDirectionAdapter::noteUnanswered(pid_t pid) {
    if (const auto known = known_.find(pid); known != known_.end()) {
        known->second.isUnanswered = true;
    }
}

void MenuBarDirectionAdapter::continueLookup(const std::shared_ptr<Lookup>& lookup) {
    using State = ax::TreeSearch::State;
    const auto isLast = [&](const ax::Candidate& candidate) {
        const auto identifier = candidate.text("AXIdentifier");
        if (identifier == paragraphCommand::actionIdentifier(WritingDirection::leftToRight)) {
            lookup->leftToRight = candidate.element;
        } else if (identifier == paragraphCommand::actionIdentifier(WritingDirection::rightToLeft)) {
            lookup->rightToLeft = candidate.element;
        } else if (candidate.isLabelled(core::appKitDirectionLabels().menu)) {
            lookup->titled.push_back(candidate.element);
        }
        return lookup->leftToRight && lookup->rightToLeft;
    };
    auto state = State::searching;
    for (int count = 0; count < stepsAtOnce && state == State::searching; ++count) {
        state = lookup->search.step(services_.accessibility, isLast);
    }
    if (state == State::unanswered) {
        noteUnanswered(lookup->pid);
    } else if (state != State::searching) {
        endLookup(*lookup);
    } else {
        services_.mainQueue.postAfter(1ms, [this, alive = lifetime_.watch(), lookup] {
            if (alive) {
                continueLookup(lookup);
            }
        });
    }
}

void MenuBarDirectionAdapter::endLookup(const Lookup& lookup) {
    const auto known = known_.find(lookup.pid);
    if (known == known_.end()) {
        return;
    }
    if (lookup.leftToRight && lookup.rightToLeft) {
        known->second.commands = Commands{*lookup.leftToRight, *lookup.rightToLeft};
        return;
    }
    for (const auto& item : lookup.titled) {
        if (auto commands = commandsByTitle(item)) {
            known->second.commands = std::move(commands);
            return;
        }
    }
}

std::optional<MenuBarDirectionAdapter::Commands> MenuBarDirectionAdapter::commandsByTitle(const AXElement& item) const {
    auto& accessibility = services_.accessibility;
    const auto submenu = ax::firstOfRole(accessibility, ax::children(accessibility, item), "AXMenu");
    const auto items = submenu ? ax::children(accessibility, *submenu) : std::vector<AXElement>();
    const auto titles = ax::labels(accessibility, items);
    const auto& labels = core::appKitDirectionLabels();
    const auto leftToRight = paragraphCommand::index(titles, labels, WritingDirection::leftToRight);
    const auto rightToLeft = paragraphCommand::index(titles, labels, WritingDirection::rightToLeft);
    return leftToRight && rightToLeft ? std::optional(Commands{items.at(*leftToRight), items.at(*rightToLeft)})
                                      : std::nullopt;
}

bool MenuBarDirectionAdapter::serves(const RunningApplication& application) const {
    const auto* known = find(application);
    return known != nullptr && known->commands;
}

const MenuBarDirectionAdapter::Known* MenuBarDirectionAdapter::find(const RunningApplication& application) const {
    const auto found = known_.find(application.pid);
    return found != known_.end() && found->second.bundleID == application.bundleID ? &found->second : nullptr;
}

void MenuBarDirectionAdapter::apply(WritingDirection direction) {
    const auto front = services_.workspace.frontmostApplication();
    if (!front || !serves(*front)) {
        return;
    }
    auto& accessibility = services_.accessibility;
    const auto application = accessibility.application(front->pid);
    accessibility.setMessagingTimeout(application, directionTimeout);
    const auto focused = ax::element(accessibility, application, "AXFocusedUIElement");
    if (!focused || !isEditableInput(accessibility, *focused)) {
        return;
    }
    const auto& commands = *find(*front)->commands;
    const bool isPressed = ax::press(accessibility, direction == WritingDirection::rightToLeft ? commands.rightToLeft
                                                                                               : commands.leftToRight);
    if (isPressed) {
        report_({core::texts::appliedDirection(core::rawValue(direction), front->name), direction});
    } else {
        known_.erase(front->pid); // it may have rebuilt its menus
        lookUpFront();
        report_(core::texts::directionNotApplied);
    }
}

} // namespace quillane
