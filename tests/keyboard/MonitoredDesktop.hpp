// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "fakes/FakeDesktop.hpp"
#include "keyboard/KeyboardMonitor.hpp"
#include "keyboard/RTLInput.hpp"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quillane::testing {

/// A faked desktop with a keyboard monitor that has every feature option on and is not started.
class MonitoredDesktop {
public:
    MonitoredDesktop() {
        monitor = std::make_unique<KeyboardMonitor>(desktop.platform, input,
                                                    [this] { return core::TypedStrokes::Time(desktop.queue.now()); });
        monitor->onDirection = [this](core::WritingDirection direction) {
            handled.push_back("direction " + std::string(core::rawValue(direction)));
        };
        monitor->onRetyping = [this](const KeyboardMonitor::Retyping& press) {
            handled.push_back("retyping " + std::to_string(press.strokes) + (press.capsLock ? " with Caps Lock" : ""));
        };
        monitor->onLanguageSwitch = [this] { handled.emplace_back("language switch"); };
        monitor->onInterruption = [this](core::UserInput userInput) {
            handled.emplace_back("interruption");
            inputs.push_back(userInput);
        };
        monitor->onDisabled = [this] { handled.emplace_back("disabled"); };
        monitor->onKeyboardActivity = [this] { handled.emplace_back("activity"); };
        monitor->setOptions(switches);
    }

    MonitoredDesktop(const MonitoredDesktop&) = delete;
    MonitoredDesktop& operator=(const MonitoredDesktop&) = delete;

    /// Changes the options and passes them to the monitor.
    template <typename Change>
    void change(Change change) {
        change(switches);
        monitor->setOptions(switches);
    }

    /// The calls of handlers since the last time, in order, after everything posted has run.
    std::vector<std::string> taken() {
        desktop.settle();
        return std::exchange(handled, {});
    }

    /// The same, without the calls that come with ordinary typing: chords alone.
    std::vector<std::string> chords() {
        auto all = taken();
        std::erase_if(all, [](const std::string& one) { return one == "interruption" || one == "activity"; });
        return all;
    }

    fakes::FakeDesktop desktop;
    RTLInput input{desktop.inputSources, desktop.accessibility, desktop.workspace};
    core::FeatureOptions switches;
    std::unique_ptr<KeyboardMonitor> monitor; ///< until a test releases it; it must not be touched afterwards
    std::vector<std::string> handled;
    std::vector<core::UserInput> inputs; ///< of the interruptions
};

} // namespace quillane::testing
