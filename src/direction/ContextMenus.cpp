// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/ContextMenus.hpp"

#include "direction/AX.hpp"

#include <array>
#include <utility>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr auto interval = 60ms;
constexpr int lastRun = 166;   ///< ten seconds
constexpr int runsToALook = 4; ///< a menu is announced; searching the tree is the fallback
constexpr std::size_t applicationLimit = 500;
constexpr std::size_t stepsToMenu = 8;

} // namespace

std::optional<AXElement> openContextMenu(Accessibility& accessibility, const AXElement& application) {
    const auto focused = ax::element(accessibility, application, "AXFocusedUIElement");
    if (focused) {
        if (auto shown = ax::element(accessibility, *focused, "AXShownMenuUIElement")) {
            return shown;
        }
    }
    if (auto shown = ax::element(accessibility, application, "AXShownMenuUIElement")) {
        return shown;
    }
    if (focused) {
        if (auto above = ax::closest(accessibility, *focused, "AXMenu", stepsToMenu + 1)) {
            return above;
        }
    }
    if (auto child = ax::firstOfRole(accessibility, ax::children(accessibility, application), "AXMenu")) {
        return child;
    }
    constexpr std::array<std::string_view, 1> skipping{"AXMenuBar"};
    return ax::find(accessibility, application, {.limit = applicationLimit, .skipping = skipping, .reading = {}},
                    [](const ax::Candidate& candidate) { return candidate.role == "AXMenu"; });
}

bool isOpen(Accessibility& accessibility, const AXElement& menu) {
    const auto role = ax::string(accessibility, menu, "AXRole");
    return role ? role == "AXMenu" : !accessibility.isAnswering(menu);
}

bool isAnswering(Accessibility& accessibility, const AXElement& application) {
    return ax::string(accessibility, application, "AXRole").has_value();
}

void AbandonedMenu::close(Request request, const std::optional<AXElement>& menu) {
    forget();
    watch_ = Watch{.request = std::move(request), .menu = menu};
    if (menu) {
        tryToClose(false);
    }
    if (!watch_) {
        return;
    }
    schedule(0);
    if (watch_->request.find) {
        return;
    }
    observation_ =
        services_.accessibility.observe(watch_->request.application, "AXMenuOpened", [this](const AXElement& about) {
            if (watch_ && !watch_->menu && ax::string(services_.accessibility, about, "AXRole") == "AXMenu") {
                watch_->menu = about;
                closeSoon();
            }
        });
}

/// Not inside the notification, whose observation ends with the menu.
void AbandonedMenu::closeSoon() {
    services_.mainQueue.post([this, alive = lifetime_.watch(), number = number_] {
        if (alive && number_ == number) {
            tryToClose(false);
        }
    });
}

void AbandonedMenu::note(core::UserInput input) {
    if (!watch_) {
        return;
    }
    const bool isOpen = watch_->menu.has_value();
    switch (input) {
    case core::UserInput::typing: // never meant for a menu that nobody has requested
        return;
    case core::UserInput::navigation:
        if (isOpen) {
            forget();
        }
        return;
    case core::UserInput::command:
        watch_->mayBeAnother = true;
        if (isOpen) {
            forget();
        }
        return;
    case core::UserInput::menuRequest:
        forget();
    }
}

void AbandonedMenu::forget() {
    ++number_;
    watch_.reset();
    closed_.reset();
    observation_.reset();
}

void AbandonedMenu::schedule(int run) {
    services_.mainQueue.postAfter(interval, [this, alive = lifetime_.watch(), run, number = number_] {
        if (alive && number_ == number) {
            step(run);
        }
    });
}

void AbandonedMenu::step(int run) {
    tryToClose(run % runsToALook == 0);
    if (watch_ && run < lastRun) {
        schedule(run + 1);
    } else {
        forget();
    }
}

/// Tries again while the application has not even been reached; otherwise the menu may already be closed.
void AbandonedMenu::tryToClose(bool looks) {
    const auto front = services_.workspace.frontmostApplication();
    if (!front || front->pid != watch_->request.pid) {
        return; // closing a menu may take a key, which would go to another application
    }
    auto& accessibility = services_.accessibility;
    const auto& request = watch_->request;
    const auto find = [&] {
        return request.find ? request.find() : openContextMenu(accessibility, request.application);
    };
    const auto menu = watch_->menu || !looks ? watch_->menu : find();
    if (!menu) {
        return;
    }
    if (watch_->mayBeAnother && !request.isRecognized(*menu)) {
        watch_->menu.reset();
        return;
    }
    if (accessibility.performAction(*menu, "AXCancel") == AXActionResult::failed &&
        !isAnswering(accessibility, request.application)) {
        watch_->menu = menu;
        return;
    }
    forget();
    closed_ = menu;
}

bool AbandonedMenu::isDone() const {
    return !watch_ && !(closed_ && isOpen(services_.accessibility, *closed_));
}

} // namespace quillane
