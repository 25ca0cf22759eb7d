// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/ApplicationSources.hpp"

#include "platform/Platform.hpp"

#include <algorithm>
#include <vector>

#include <unistd.h>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr auto betweenAttempts = 50ms;
constexpr int maximumAttempts = 200; // ten seconds, for a shortcut that is still held
constexpr auto anyModifier = core::flags::control | core::flags::option | core::flags::shift | core::flags::command;
constexpr core::KeyCode lastKey = 127;
constexpr core::KeyCode capsLock = 57; // reads as down while it is on

} // namespace

ApplicationSources::ApplicationSources(const Platform& platform, std::function<bool()> isSuspended)
    : platform_(platform), isSuspended_(std::move(isSuspended)) {}

void ApplicationSources::noteActivation() {
    ++current_;
    isWaiting_ = false;
    if (core::ApplicationSourceOptions::load(*platform_.userDefaults).enabled) {
        restore(1);
    }
}

void ApplicationSources::noteChange() {
    ++current_; // the user has chosen another one meanwhile
    isWaiting_ = false;
    remember();
}

void ApplicationSources::interrupt(core::UserInput input) {
    if (isWaiting_ && input == core::UserInput::typing) {
        ++current_;
        isWaiting_ = false;
        remember();
    }
}

void ApplicationSources::restore(int attempt) {
    const auto application = front();
    const auto current = platform_.inputSources->current();
    const auto enabled = platform_.inputSources->enabled();
    isWaiting_ = false;
    if (!application || !current || !enabled || isSuspended_()) {
        return;
    }
    std::vector<std::string> ids;
    std::ranges::transform(*enabled, std::back_inserter(ids), &InputSource::id);
    const auto wanted = core::sourceOnReturn(core::ApplicationSourceOptions::load(*platform_.userDefaults), memory_,
                                             *application, current->id, ids);
    if (!wanted) {
        remember(); // what an application is first seen with
    } else if (!isAnyKeyDown()) {
        static_cast<void>(platform_.inputSources->select(*wanted)); // otherwise everything stays as it is
    } else if (attempt < maximumAttempts) {
        isWaiting_ = true;
        platform_.mainQueue->postAfter(betweenAttempts,
                                       [this, alive = lifetime_.watch(), number = current_, next = attempt + 1] {
                                           if (alive && number == current_) {
                                               restore(next);
                                           }
                                       });
    }
}

void ApplicationSources::remember() {
    const auto application = front();
    const auto current = platform_.inputSources->current();
    if (application && current && !isSuspended_() &&
        core::ApplicationSourceOptions::load(*platform_.userDefaults).enabled) {
        memory_.note(*application, current->id);
    }
}

std::optional<std::string> ApplicationSources::front() const {
    const auto application = platform_.workspace->frontmostApplication();
    if (!application || application->pid == ::getpid()) {
        return std::nullopt;
    }
    return application->bundleID.value_or(application->name);
}

bool ApplicationSources::isAnyKeyDown() const {
    const auto& keys = *platform_.keyEvents;
    const auto isDown = [&](core::KeyCode key) { return key != capsLock && keys.isKeyDown(key); };
    if ((keys.currentFlags() & anyModifier) != 0) {
        return true;
    }
    for (core::KeyCode key = 0; key <= lastKey; ++key) {
        if (isDown(key)) {
            return true;
        }
    }
    return false;
}

} // namespace quillane
