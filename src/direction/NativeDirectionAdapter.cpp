// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/NativeDirectionAdapter.hpp"

#include "core/direction/ChromiumFamily.hpp"
#include "core/direction/ParagraphCommand.hpp"
#include "core/localization/Texts.hpp"
#include "direction/AX.hpp"
#include "direction/BrowserWaking.hpp"
#include "direction/Editors.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <vector>

namespace quillane {

namespace {

using namespace std::chrono_literals;
using core::SupportedApplication;
namespace texts = core::texts;

constexpr auto step = 60ms;
constexpr int lastRun = 24;
constexpr std::size_t menuLimit = 240;
constexpr std::string_view diagnosticKey = "LastBrowserDiagnostic";
constexpr std::size_t diagnosticChildren = 32; // an application may report thousands
constexpr std::array<std::string_view, 1> roleName{"AXRole"};

constexpr std::array<std::string_view, 3> itemNames{ax::labelNames[0], ax::labelNames[1], "AXIdentifier"};

/// What is read of an item of a menu with these labels.
std::span<const std::string_view> namesOfItems(const core::DirectionLabels& labels) {
    return std::span(itemNames).first(labels.identifiesActions ? itemNames.size() : ax::labelNames.size());
}

/// The labels of the commands in the menu of this editor.
const core::DirectionLabels& labelsFor(Accessibility& accessibility, const AXElement& editor,
                                       const SupportedApplication& application) {
    return *(isSubjectLine(accessibility, editor, application) ? application.subject->labels : application.labels);
}

} // namespace

NativeDirectionAdapter::NativeDirectionAdapter(DirectionServices services, DirectionReport report)
    : services_(services), report_(std::move(report)), abandonedMenu_(services), typing_(services) {}

void NativeDirectionAdapter::apply(core::WritingDirection direction, const SupportedApplication& application) {
    if (pending_) {
        return;
    }
    const auto front = services_.workspace.frontmostApplication();
    if (!front || front->bundleID != application.bundleID) {
        return;
    }
    begin({.pid = front->pid, .application = application, .direction = direction}, 0);
}

void NativeDirectionAdapter::begin(const Request& request, int wakings) {
    auto& accessibility = services_.accessibility;
    const auto& application = request.application;
    const auto element = accessibility.application(request.pid);
    accessibility.setMessagingTimeout(element, directionTimeout);
    const auto editor = ax::element(accessibility, element, "AXFocusedUIElement");
    if (!editor && core::chromiumFamily::isWokenAgain(application, wakings)) {
        wake(request, wakings);
        return;
    }
    if (!editor || !isDirectionEditor(accessibility, *editor, application)) {
        report_(application.placementHint);
        return;
    }
    const auto& labels = labelsFor(accessibility, *editor, application);
    auto selection = SelectionSnapshot::of(accessibility, *editor);
    if (!selection) {
        report_(texts::cursorPositionNotExposed);
        return;
    }
    if (contextMenu(element)) {
        report_(texts::closeOpenMenu);
        return;
    }
    const Attempt attempt{element,     *editor, std::move(*selection), application,
                          request.pid, labels,  request.direction,     ++operation_};
    pending_ = true;
    abandonedMenu_.forget(); // this attempt uses or closes whatever opens now
    observeMenu(element);
    lastMenu_.reset();
    typing_.begin([this, pid = request.pid] { return isMenuGone(pid); });
    if (accessibility.performAction(*editor, "AXShowMenu") == AXActionResult::failed) {
        finish();
        report_(texts::cannotOpenDirectionMenu(application.displayName));
        return;
    }
    requested_.emplace(attempt);
    scheduleChoice(attempt, 0);
}

/// A browser without an accessibility tree yet has no focused element: wakes it and starts again.
void NativeDirectionAdapter::wake(const Request& request, int wakings) {
    wakeBrowser(services_.accessibility, request.pid);
    pending_ = true;
    services_.mainQueue.postAfter(core::chromiumFamily::wakingInterval,
                                  [this, alive = lifetime_.watch(), request, wakings, operation = ++operation_] {
                                      if (!alive || operation_ != operation) {
                                          return;
                                      }
                                      pending_ = false;
                                      const auto front = services_.workspace.frontmostApplication();
                                      if (front && front->pid == request.pid) {
                                          begin(request, wakings + 1);
                                      }
                                  });
}

void NativeDirectionAdapter::cancelPending() {
    ++operation_;
    abandonMenu();
    finish();
}

void NativeDirectionAdapter::interrupt(core::UserInput input) {
    ++operation_;
    const bool isTaken = capturedMenu_ ? input != core::UserInput::typing : input == core::UserInput::menuRequest;
    if (!isTaken) {
        abandonMenu();
    }
    finish();
    abandonedMenu_.note(input);
    typing_.note(input);
}

void NativeDirectionAdapter::abandonMenu() {
    if (requested_) {
        closeMenu(capturedMenu_, *requested_);
    }
}

void NativeDirectionAdapter::stopObservingMenu() {
    observation_.reset();
    capturedMenu_.reset();
}

void NativeDirectionAdapter::observeMenu(const AXElement& application) {
    stopObservingMenu();
    observation_ = services_.accessibility.observe(application, "AXMenuOpened", [this](const AXElement& about) {
        if (pending_ && !capturedMenu_ && ax::string(services_.accessibility, about, "AXRole") == "AXMenu") {
            capturedMenu_ = about;
        }
    });
}

std::optional<AXElement> NativeDirectionAdapter::contextMenu(const AXElement& application) const {
    if (capturedMenu_) {
        return capturedMenu_;
    }
    return openContextMenu(services_.accessibility, application);
}

/// No menu is open or expected where the user types.
bool NativeDirectionAdapter::isMenuGone(pid_t pid) const {
    const auto front = services_.workspace.frontmostApplication();
    return !front || front->pid != pid ||
           (abandonedMenu_.isDone() && !(lastMenu_ && isOpen(services_.accessibility, *lastMenu_)));
}

void NativeDirectionAdapter::scheduleChoice(const Attempt& attempt, int run) {
    services_.mainQueue.postAfter(step, [this, alive = lifetime_.watch(), attempt, run] {
        if (alive) {
            chooseDirection(attempt, run);
        }
    });
}

void NativeDirectionAdapter::chooseDirection(const Attempt& attempt, int run) {
    if (operation_ != attempt.operation) {
        return;
    }
    const auto front = services_.workspace.frontmostApplication();
    if (!front || front->pid != attempt.pid) {
        cancelPending();
        return;
    }
    const auto menu = contextMenu(attempt.application);
    if (!menu && run < lastRun) {
        scheduleChoice(attempt, run + 1);
        return;
    }
    if (!menu) {
        abandonMenu();
        finish();
        recordDiagnostic(attempt);
        report_(texts::directionMenuUnavailable);
        return;
    }
    lastMenu_ = menu;
    const auto command = paragraphCommand(*menu, attempt);
    if (!command && run < lastRun && !isAnswering(services_.accessibility, attempt.application)) {
        scheduleChoice(attempt, run + 1);
        return;
    }
    if (!command) {
        refuse(*menu, attempt, texts::noParagraphDirectionCommand);
        return;
    }
    if (const auto reason = obstacle(*menu, attempt)) {
        refuse(*menu, attempt, *reason);
        return;
    }
    pressCommand(*command, *menu, attempt);
}

/// An item that is identified by its action needs no title; it may also be in a submenu with an unknown title.
std::optional<AXElement> NativeDirectionAdapter::paragraphCommand(const AXElement& menu, const Attempt& attempt) const {
    auto& accessibility = services_.accessibility;
    const auto names = namesOfItems(attempt.labels);
    const auto action = core::paragraphCommand::actionIdentifier(attempt.direction);
    bool isCommand = false;
    auto item = ax::find(accessibility, menu, {.limit = menuLimit, .skipping = {}, .reading = names},
                         [&](const ax::Candidate& candidate) {
                             isCommand = candidate.text("AXIdentifier") == action;
                             return isCommand || candidate.isLabelled(attempt.labels.menu);
                         });
    if (!item || isCommand) {
        return item;
    }
    const auto submenu = ax::firstOfRole(accessibility, ax::children(accessibility, *item), "AXMenu");
    if (!submenu) {
        return std::nullopt;
    }
    const auto items = ax::children(accessibility, *submenu);
    std::vector<std::string> titles;
    for (const auto& values : accessibility.attributesOfEach(items, names)) {
        const auto text = [&](std::size_t index) {
            return values && index < values->size() ? std::get_if<std::string>(&values->at(index)) : nullptr;
        };
        if (const auto* identifier = text(itemNames.size() - 1); identifier != nullptr && *identifier == action) {
            return items.at(titles.size());
        }
        const auto* title = text(0) != nullptr ? text(0) : text(1);
        titles.push_back(title != nullptr ? *title : std::string());
    }
    const auto index = core::paragraphCommand::index(titles, attempt.labels, attempt.direction);
    return index ? std::optional(items.at(*index)) : std::nullopt;
}

std::optional<core::LocalizedText> NativeDirectionAdapter::obstacle(const AXElement& menu,
                                                                    const Attempt& attempt) const {
    auto& accessibility = services_.accessibility;
    const auto focused = ax::element(accessibility, attempt.application, "AXFocusedUIElement");
    if (!focused) {
        return texts::cursorPositionUnavailable;
    }
    if (*focused != attempt.editor && !ax::isDescendant(accessibility, *focused, menu)) {
        return texts::focusMovedToAnotherField;
    }
    // Opening a menu can move or widen the selection in some editors.
    if (!attempt.selection.isPreserved(accessibility, attempt.editor)) {
        return texts::couldNotPreserveSelection;
    }
    return std::nullopt;
}

void NativeDirectionAdapter::pressCommand(const AXElement& command, const AXElement& menu, const Attempt& attempt) {
    if (operation_ != attempt.operation) {
        return;
    }
    auto& accessibility = services_.accessibility;
    const bool applied = contextMenu(attempt.application) == menu && ax::press(accessibility, command);
    if (!applied) {
        refuse(menu, attempt, texts::directionNotApplied);
        return;
    }
    finish();
    report_(
        {texts::appliedDirection(core::rawValue(attempt.direction), attempt.browser.displayName), attempt.direction});
}

void NativeDirectionAdapter::finish() {
    pending_ = false;
    requested_.reset();
    stopObservingMenu();
    typing_.end();
}

void NativeDirectionAdapter::refuse(const AXElement& menu, const Attempt& attempt, const core::LocalizedText& reason) {
    closeMenu(menu, attempt);
    finish();
    report_(reason);
}

void NativeDirectionAdapter::closeMenu(const std::optional<AXElement>& menu, const Attempt& attempt) {
    abandonedMenu_.close(
        {.application = attempt.application,
         .pid = attempt.pid,
         .isRecognized = [this,
                          attempt](const AXElement& open) { return paragraphCommand(open, attempt).has_value(); }},
        menu);
}

void NativeDirectionAdapter::recordDiagnostic(const Attempt& attempt) {
    auto& accessibility = services_.accessibility;
    std::string actions;
    for (const auto& name : accessibility.actionNames(attempt.editor)) {
        actions.append(actions.empty() ? "" : ", ").append(name);
    }
    const auto roleOf = [&](const std::optional<AXElement>& element) {
        return element ? ax::string(accessibility, *element, "AXRole").value_or("unknown") : std::string("unknown");
    };
    const auto focused = ax::element(accessibility, attempt.application, "AXFocusedUIElement");
    std::string text = "Editor actions: " + actions + "\nFocus role: " + roleOf(focused);
    if (focused) {
        auto children = ax::children(accessibility, *focused);
        children.erase(children.begin() + static_cast<std::ptrdiff_t>(std::min(children.size(), diagnosticChildren)),
                       children.end());
        for (const auto& values : accessibility.attributesOfEach(children, roleName)) {
            const auto* role = values ? std::get_if<std::string>(&values->front()) : nullptr;
            text += "\nChild role: " + (role != nullptr ? *role : std::string("unknown"));
        }
    }
    services_.userDefaults.setObject(diagnosticKey, text);
}

} // namespace quillane
