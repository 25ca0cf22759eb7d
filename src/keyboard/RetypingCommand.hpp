// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/ChordOutcome.hpp"
#include "core/keyboard/TypedStrokes.hpp"
#include "core/keyboard/TypedWords.hpp"
#include "core/support/Lifetime.hpp"
#include "keyboard/Retyper.hpp"
#include "platform/Accessibility.hpp"
#include "platform/Workspace.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace quillane {

struct Platform;

/// Fixes text that was typed in the wrong layout, in the editor that has the focus: the selected text, or else the last
/// typed word before the cursor, and with each further press one word more. Then selects the input source of the new
/// text. Does nothing in password fields and terminals. Keeps no text: between two presses it knows places and numbers.
/// Main thread.
class RetypingCommand {
public:
    using Clock = std::function<core::TypedStrokes::Time()>;

    struct Press {
        std::size_t strokes = 0; ///< typed before the cursor since it was put there
        core::retyping::CapsLock capsLock = core::retyping::CapsLock::off;
    };

    /// Platform and retyper must outlive it.
    RetypingCommand(const Platform& platform, Retyper& retyper, Clock clock = std::chrono::steady_clock::now);

    void retype(const Press& press);

    /// The user goes on typing: the cursor is theirs.
    void interrupt() { pending_.restart(); }

    /// Ends what is under way, and the run of presses.
    void cancel();

    /// Receives the outcome: the input source that was selected, or why nothing was done.
    std::function<void(const core::ChordOutcome&)> report;

private:
    /// What the presses of one run have retyped: the text between two places in the units of its application.
    struct Run {
        AXElement editor;
        std::int64_t begin;
        std::int64_t cursor;
        std::size_t strokes; ///< counted at the press
        std::size_t taken;   ///< of them
        Retyper::Way way;
        core::TypedStrokes::Time last;
    };

    /// A text that is to take the place of another one.
    struct Change {
        AXElement editor;
        AXTextRange range;
        std::string before;
        std::string after;
        std::int64_t length;   ///< of what comes after
        AXTextRange selection; ///< wanted at the end
        Retyper::Way way;
        std::string sourceBefore; ///< the input source in use
    };

    [[nodiscard]] std::optional<AXElement> editor(pid_t pid) const;
    [[nodiscard]] bool isOff(const RunningApplication& front) const;
    [[nodiscard]] std::optional<std::string> retyped(std::string_view text, const Retyper::Way& way,
                                                     core::retyping::CapsLock capsLock) const;
    void retypeSelection(const AXElement& editor, const AXTextRange& selection, const Press& press);
    void retypeWord(const AXElement& editor, std::int64_t cursor, const Press& press);
    [[nodiscard]] bool continues(const AXElement& editor, std::int64_t cursor, const Press& press) const;
    [[nodiscard]] bool write(Change change);
    void confirm(const Change& change, int looks);
    void selectSource(const std::string& id);
    void say(const core::ChordOutcome& outcome) const;

    const Platform& platform_;
    Retyper& retyper_;
    Clock clock_;
    std::optional<Run> run_;
    core::Lifetime pending_; ///< of a change that the application has not carried out yet
};

} // namespace quillane
