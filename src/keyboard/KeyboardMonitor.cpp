// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/KeyboardMonitor.hpp"

#include "core/direction/DirectionTarget.hpp"
#include "core/keyboard/KeyHold.hpp"
#include "core/keyboard/ScreenSharingPolicy.hpp"
#include "core/keyboard/ShiftEnglish.hpp"
#include "platform/Platform.hpp"

#include <array>
#include <utility>

namespace quillane {

namespace {

constexpr std::array watchedTypes{EventType::flagsChanged,  EventType::keyDown,        EventType::keyUp,
                                  EventType::leftMouseDown, EventType::rightMouseDown, EventType::otherMouseDown,
                                  EventType::scrollWheel};

constexpr std::uint64_t eventMask = [] {
    std::uint64_t mask = 0;
    for (const auto type : watchedTypes) {
        mask |= maskBit(type);
    }
    return mask;
}();
static_assert(eventMask == 0x2401C0A);

constexpr core::EventFlags shortcutModifiers =
    core::flags::control | core::flags::option | core::flags::command | core::flags::secondaryFn;

/// The meaning of a press, a click or a scroll. A press that the tap holds back reaches no menu.
core::UserInput inputOf(const InputEvent& event, const EventTap& tap) {
    switch (event.type) {
    case EventType::keyDown:
        return tap.isHolding() && core::keyHold::holds(event.keyCode, event.flags)
                   ? core::UserInput::typing
                   : core::userInput(event.keyCode, event.flags);
    case EventType::scrollWheel:
        return core::UserInput::navigation;
    case EventType::rightMouseDown:
        return core::UserInput::menuRequest;
    case EventType::leftMouseDown: // with Control, a click opens the context menu on macOS
        return (event.flags & core::flags::control) != 0 ? core::UserInput::menuRequest : core::UserInput::command;
    default:
        return core::UserInput::command;
    }
}

bool isKeyboardEvent(EventType type) {
    return type == EventType::keyDown || type == EventType::keyUp || type == EventType::flagsChanged;
}

} // namespace

KeyboardMonitor::KeyboardMonitor(const Platform& platform, const RTLInput& input, Clock clock)
    : tap_(*platform.eventTap),
      keyEvents_(*platform.keyEvents),
      workspace_(*platform.workspace),
      mainQueue_(*platform.mainQueue),
      input_(input),
      clock_(std::move(clock)) {}

KeyboardMonitor::~KeyboardMonitor() {
    stop();
}

bool KeyboardMonitor::start() {
    stop();
    hasTap_ = tap_.start(eventMask, [this](InputEvent& event) { receive(event); });
    return isRunning();
}

void KeyboardMonitor::stop() {
    tap_.stop();
    hasTap_ = false;
    keyboardEventsObserved_ = false;
    reset();
}

void KeyboardMonitor::setOptions(const core::FeatureOptions& options) {
    options_ = options;
    tap_.setReplaceableKeys(options.shiftEnglish ? core::shiftEnglish::keyCodes() : std::span<const core::KeyCode>());
}

void KeyboardMonitor::reset() {
    ++generation_;
    heldKeys_.clear();
    const auto down = keyEvents_.currentFlags();
    directionChord_.reset();
    directionChord_.update(down);
    directionChord_.cancel();
    languageChord_.reset();
    languageChord_.update(down);
    languageChord_.cancel();
    retypingChord_.reset();
    retypingChord_.update(down);
    retypingChord_.cancel();
    typed_.reset();
    frontPid_.reset();
    remapped_.clear();
}

void KeyboardMonitor::receive(InputEvent& event) {
    if (event.type == EventType::tapDisabledByTimeout || event.type == EventType::tapDisabledByUserInput) {
        receiveDisabled();
        return;
    }
    if (!keyboardEventsObserved_ && isKeyboardEvent(event.type)) {
        keyboardEventsObserved_ = true;
        post(&KeyboardMonitor::onKeyboardActivity);
    }
    const auto front = workspace_.frontmostApplication();
    if (!front || front->pid != frontPid_) {
        reset();
    }
    frontPid_ = front ? std::optional(front->pid) : std::nullopt;
    if (!isWanted()) {
        return;
    }
    if (core::screenSharingPolicy::bypassKeyboardProcessing(front ? front->bundleID : std::nullopt,
                                                            options_.excludeScreenSharing)) {
        reset();
        interrupt(core::UserInput::command);
        return;
    }
    if (event.type == EventType::flagsChanged) {
        receiveFlags(event, front);
        return;
    }
    languageChord_.cancel();
    directionChord_.cancel();
    retypingChord_.cancel();
    if (event.type == EventType::keyUp) {
        receiveKeyUp(event);
        return;
    }
    interrupt(inputOf(event, tap_));
    if (event.type == EventType::keyDown) {
        typed_.notePress(event.keyCode, event.flags, clock_());
        receiveKeyDown(event, front);
    } else if (event.type != EventType::scrollWheel) {
        typed_.reset();
    }
}

void KeyboardMonitor::receiveDisabled() {
    keyboardEventsObserved_ = false;
    reset();
    tap_.enable();
    post(&KeyboardMonitor::onDisabled);
}

void KeyboardMonitor::receiveKeyUp(InputEvent& event) {
    heldKeys_.erase(event.keyCode);
    if (const auto entry = remapped_.extract(event.keyCode)) {
        event.replacementText = entry.mapped(); // so that the release matches the press
    }
}

void KeyboardMonitor::receiveKeyDown(InputEvent& event, const std::optional<RunningApplication>& front) {
    heldKeys_.insert(event.keyCode);
    if (options_.shiftEnglish) {
        rewrite(event, front);
    }
}

void KeyboardMonitor::rewrite(InputEvent& event, const std::optional<RunningApplication>& front) {
    remapped_.erase(event.keyCode);
    const core::shiftEnglish::Conditions conditions{.shift = (event.flags & core::flags::shift) != 0,
                                                    .shortcutModifier = (event.flags & shortcutModifiers) != 0,
                                                    .rtlSource = true,
                                                    .editable = true};
    const auto letter = core::shiftEnglish::character(event.keyCode, conditions);
    // The cheap questions come first; the last one asks another process.
    if (letter && front && input_.current().isRTL && input_.hasEditableFocus(front->pid)) {
        event.replacementText = letter;
        remapped_.insert_or_assign(event.keyCode, *letter);
    }
}

void KeyboardMonitor::receiveFlags(const InputEvent& event, const std::optional<RunningApplication>& front) {
    // Drop held keys whose release was hidden, as all releases are while a password is typed.
    std::erase_if(heldKeys_, [this](core::KeyCode key) { return !keyEvents_.isKeyDown(key); });
    std::erase_if(remapped_, [this](const auto& entry) { return !keyEvents_.isKeyDown(entry.first); });
    const bool languageFired = languageChord_.update(event.flags);
    if (!heldKeys_.empty()) {
        languageChord_.cancel();
    } else if (languageFired && options_.languageSwitch) {
        directionChord_.cancel();
        deliver(
            [this] {
                if (onLanguageSwitch) {
                    onLanguageSwitch();
                }
            },
            frontPid_, false);
    }
    receiveRetypingFlags(event.flags);
    if (!options_.writingDirection || !isDirectionTarget(front)) {
        directionChord_.reset();
        return;
    }
    const auto direction = directionChord_.update(event.flags);
    if (!heldKeys_.empty()) {
        directionChord_.cancel();
    } else if (direction) {
        deliver(
            [this, direction = *direction] {
                if (onDirection) {
                    onDirection(direction);
                }
            },
            frontPid_, true);
    }
}

void KeyboardMonitor::receiveRetypingFlags(core::EventFlags flags) {
    const bool fired = retypingChord_.update(flags);
    if (!heldKeys_.empty()) {
        retypingChord_.cancel();
    } else if (fired && retyping_) {
        deliver(
            [this, press = Retyping{typed_.count(clock_()), (flags & core::flags::capsLock) != 0}] {
                if (onRetyping) {
                    onRetyping(press);
                }
            },
            frontPid_, false);
    }
}

bool KeyboardMonitor::isWanted() const {
    return options_.shouldMonitor() || (retyping_ && !options_.paused);
}

void KeyboardMonitor::post(const std::function<void()> KeyboardMonitor::*handler) {
    if (!(this->*handler)) {
        return;
    }
    mainQueue_.post([this, alive = lifetime_.watch(), handler] {
        if (alive && this->*handler) {
            (this->*handler)();
        }
    });
}

void KeyboardMonitor::interrupt(core::UserInput input) {
    if (!onInterruption) {
        return;
    }
    mainQueue_.post([this, alive = lifetime_.watch(), input] {
        if (alive && onInterruption) {
            onInterruption(input);
        }
    });
}

void KeyboardMonitor::deliver(std::function<void()> handler, std::optional<pid_t> pid, bool toDirectionTarget) {
    const auto finish = [this, alive = lifetime_.watch(), handler = std::move(handler), pid, toDirectionTarget,
                         generation = generation_] {
        if (!alive || !tap_.isEnabled() || !isWanted() || generation != generation_) {
            return;
        }
        const auto front = workspace_.frontmostApplication();
        const bool samePid = front ? front->pid == pid : !pid;
        if (samePid && (!toDirectionTarget || isDirectionTarget(front))) {
            handler();
        }
    };
    mainQueue_.post([this, alive = lifetime_.watch(), finish] {
        if (alive) {
            workspace_.whenFrontIsKnown(finish);
        }
    });
}

bool KeyboardMonitor::isDirectionTarget(const std::optional<RunningApplication>& application) const {
    return (application && application->bundleID && core::hasDirectionCommands(*application->bundleID)) ||
           (application && hasDirectionCommands && hasDirectionCommands(*application)) ||
           (isOwnTextBoxFocused && isOwnTextBoxFocused());
}

} // namespace quillane
