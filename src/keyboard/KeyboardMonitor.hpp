// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/direction/WritingDirection.hpp"
#include "core/keyboard/LanguageSwitchChord.hpp"
#include "core/keyboard/RetypingChord.hpp"
#include "core/keyboard/TypedStrokes.hpp"
#include "core/keyboard/UserInput.hpp"
#include "core/keyboard/WritingDirectionChord.hpp"
#include "core/preferences/FeatureOptions.hpp"
#include "core/support/Lifetime.hpp"
#include "keyboard/RTLInput.hpp"
#include "platform/EventTap.hpp"
#include "platform/KeyEvents.hpp"
#include "platform/MainQueue.hpp"
#include "platform/Workspace.hpp"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace quillane {

struct Platform;

/// Watches the keyboard, clicks and scrolling through one event tap: recognises the direction, language and retyping
/// chords and rewrites the text of keys for temporary English. Of what is typed it keeps a number alone: how many keys.
/// Every event is passed on. Handlers are called from the main queue, never inside the tap; a chord is delivered only
/// if nothing has reset the monitor since and the same application is still in front.
class KeyboardMonitor {
public:
    using Clock = std::function<core::TypedStrokes::Time()>;

    /// What the retyping chord is pressed for.
    struct Retyping {
        std::size_t strokes = 0; ///< typed before the cursor
        bool capsLock = false;   ///< Caps Lock is on
    };

    /// Platform and input must outlive the monitor.
    KeyboardMonitor(const Platform& platform, const RTLInput& input, Clock clock = std::chrono::steady_clock::now);
    ~KeyboardMonitor();

    KeyboardMonitor(const KeyboardMonitor&) = delete;
    KeyboardMonitor& operator=(const KeyboardMonitor&) = delete;

    /// Starts, or restarts from any state. Returns whether the tap is enabled.
    bool start();

    void stop();

    [[nodiscard]] bool isRunning() const { return tap_.isEnabled(); }

    /// The system has given the tap, whether or not it is enabled now.
    [[nodiscard]] bool hasTap() const { return hasTap_; }

    /// A key event has arrived since the monitor started.
    [[nodiscard]] bool keyboardEventsObserved() const { return keyboardEventsObserved_; }

    void setOptions(const core::FeatureOptions& options);

    /// Whether the retyping chord acts.
    void setRetyping(bool on) { retyping_ = on; }

    /// Forgets every key and drops chords that wait for delivery. Keys that are down now cannot complete a chord until
    /// all of them have been released.
    void reset();

    /// Whether the program's own text box has the focus: direction chords act there as in a supported application.
    /// Asked while a key waits, so it must answer at once; absent where the program has no such box.
    std::function<bool()> isOwnTextBoxFocused;

    /// Whether an application that is not a supported one is known to have direction commands: direction chords act
    /// there as well. Asked while a key waits, so it must answer at once; absent where no such application is served.
    std::function<bool(const RunningApplication&)> hasDirectionCommands;

    std::function<void(core::WritingDirection)> onDirection;
    std::function<void()> onLanguageSwitch;
    std::function<void(const Retyping&)> onRetyping;
    /// A key, a click or scroll; any event while a remote desktop viewer is in front is a command.
    std::function<void(core::UserInput)> onInterruption;
    std::function<void()> onDisabled;         ///< the system has disabled the tap; it has been enabled again
    std::function<void()> onKeyboardActivity; ///< the first key event since the start

private:
    void receive(InputEvent& event);
    void receiveDisabled();
    void receiveKeyUp(InputEvent& event);
    void receiveKeyDown(InputEvent& event, const std::optional<RunningApplication>& front);
    void receiveFlags(const InputEvent& event, const std::optional<RunningApplication>& front);
    void rewrite(InputEvent& event, const std::optional<RunningApplication>& front);

    void receiveRetypingFlags(core::EventFlags flags);
    [[nodiscard]] bool isWanted() const;

    void post(const std::function<void()> KeyboardMonitor::*handler);
    void interrupt(core::UserInput input);
    void deliver(std::function<void()> handler, std::optional<pid_t> pid, bool toDirectionTarget);
    [[nodiscard]] bool isDirectionTarget(const std::optional<RunningApplication>& application) const;

    EventTap& tap_;
    const KeyEvents& keyEvents_;
    Workspace& workspace_;
    MainQueue& mainQueue_;
    const RTLInput& input_;

    core::WritingDirectionChord directionChord_;
    core::LanguageSwitchChord languageChord_;
    core::RetypingChord retypingChord_;
    core::TypedStrokes typed_;
    Clock clock_;
    std::unordered_set<core::KeyCode> heldKeys_;           ///< keys other than modifiers that are down
    std::optional<pid_t> frontPid_;                        ///< of the application in front at the last event
    std::unordered_map<core::KeyCode, char16_t> remapped_; ///< the replacement of a held key's press
    core::FeatureOptions options_;
    std::int64_t generation_ = 0; ///< counts resets
    bool retyping_ = false;
    bool hasTap_ = false;
    bool keyboardEventsObserved_ = false;
    core::Lifetime lifetime_;
};

} // namespace quillane
