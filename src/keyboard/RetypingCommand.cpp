// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/RetypingCommand.hpp"

#include "core/keyboard/Terminals.hpp"
#include "core/localization/Texts.hpp"
#include "direction/AX.hpp"
#include "platform/Platform.hpp"

#include <algorithm>
#include <utility>

namespace quillane {

namespace {

namespace retyping = core::retyping;
namespace texts = core::texts;
using namespace std::chrono_literals;

constexpr auto messagingTimeout = 150ms;
constexpr auto betweenPresses = 2s;
constexpr auto betweenLooks = 20ms;
constexpr int maximumLooks = 25;

/// Of the text before the cursor, no more is read than that many keys may have typed.
constexpr std::size_t maximumCharactersOfStroke = 4;
constexpr std::int64_t maximumCharacters = 1'000;

std::int64_t charactersToRead(std::size_t strokes) {
    const auto most = static_cast<std::size_t>(maximumCharacters) / maximumCharactersOfStroke;
    return static_cast<std::int64_t>(std::min(strokes, most) * maximumCharactersOfStroke);
}

std::optional<AXTextRange> selectionIn(Accessibility& accessibility, const AXElement& editor) {
    const auto value = accessibility.attribute(editor, "AXSelectedTextRange");
    const auto* range = value ? std::get_if<AXTextRange>(&*value) : nullptr;
    return range != nullptr ? std::optional(*range) : std::nullopt;
}

} // namespace

RetypingCommand::RetypingCommand(const Platform& platform, Retyper& retyper, Clock clock)
    : platform_(platform), retyper_(retyper), clock_(std::move(clock)) {}

void RetypingCommand::retype(const Press& press) {
    pending_.restart();
    const auto front = platform_.workspace->frontmostApplication();
    if (!front || isOff(*front)) {
        run_.reset();
        return;
    }
    const auto focused = editor(front->pid);
    if (focused && ax::string(*platform_.accessibility, *focused, "AXSubrole") == "AXSecureTextField") {
        return;
    }
    const auto selection = focused ? selectionIn(*platform_.accessibility, *focused) : std::nullopt;
    if (!selection) {
        run_.reset();
        say(texts::textCannotBeWritten);
    } else if (selection->length > 0) {
        run_.reset();
        retypeSelection(*focused, *selection, press);
    } else {
        retypeWord(*focused, selection->location, press);
    }
}

void RetypingCommand::cancel() {
    pending_.restart();
    run_.reset();
}

/// Whether keys belong to somebody else: a password is typed, or a program in a terminal gets them.
bool RetypingCommand::isOff(const RunningApplication& front) const {
    return platform_.secureInput->isEnabled() || platform_.keyEvents->goesToTerminal(front.pid) ||
           (front.bundleID && core::isTerminal(*front.bundleID));
}

std::optional<AXElement> RetypingCommand::editor(pid_t pid) const {
    auto& accessibility = *platform_.accessibility;
    const auto application = accessibility.application(pid);
    accessibility.setMessagingTimeout(application, messagingTimeout);
    return ax::element(accessibility, application, "AXFocusedUIElement");
}

std::optional<std::string> RetypingCommand::retyped(std::string_view text, const Retyper::Way& way,
                                                    retyping::CapsLock capsLock) const {
    const auto* from = retyper_.layout(way.from);
    const auto* to = retyper_.layout(way.to);
    return from != nullptr && to != nullptr ? std::optional(retyping::retyped(text, *from, *to, capsLock))
                                            : std::nullopt;
}

void RetypingCommand::retypeSelection(const AXElement& editor, const AXTextRange& selection, const Press& press) {
    auto before = platform_.accessibility->textIn(editor, selection);
    const auto unit = before ? retyping::unitOf(*before, selection.length) : std::nullopt;
    const auto way = unit ? retyper_.way(*before) : std::nullopt;
    auto after = way ? retyped(*before, *way, press.capsLock) : std::nullopt;
    if (!unit) {
        say(texts::textCannotBeWritten);
    } else if (after && after != before) {
        const auto length = retyping::lengthIn(*unit, *after);
        static_cast<void>(write({editor,
                                 selection,
                                 std::move(*before),
                                 std::move(*after),
                                 length,
                                 AXTextRange{selection.location, length},
                                 *way,
                                 {}}));
    }
}

void RetypingCommand::retypeWord(const AXElement& editor, std::int64_t cursor, const Press& press) {
    if (!continues(editor, cursor, press)) {
        run_.reset();
    }
    const auto earlier = run_;
    const auto strokes = press.strokes - (earlier ? earlier->taken : 0);
    if (strokes == 0) {
        return;
    }
    const auto end = earlier ? earlier->begin : cursor;
    const auto read = std::min(end, charactersToRead(strokes));
    const auto text = platform_.accessibility->textIn(editor, {end - read, read});
    const auto unit = text ? retyping::unitOf(*text, read) : std::nullopt;
    if (!unit) {
        say(texts::textCannotBeWritten);
        return;
    }
    const auto way = earlier ? std::optional(earlier->way) : retyper_.way(retyping::lastWord(*text, strokes));
    const auto* layout = way ? retyper_.layout(way->from) : nullptr;
    const auto word =
        layout != nullptr ? retyping::lastTypedWord(*text, *layout, press.capsLock, strokes) : std::nullopt;
    if (!word) {
        return;
    }
    auto before = text->substr(word->begin, word->end - word->begin);
    auto after = retyped(before, *way, press.capsLock);
    if (!after) {
        return;
    }
    const auto begin = end - retyping::lengthIn(*unit, std::string_view(*text).substr(word->begin));
    const AXTextRange range{begin, retyping::lengthIn(*unit, before)};
    const auto length = retyping::lengthIn(*unit, *after);
    const auto newCursor = cursor + length - range.length;
    Run next{editor, begin, newCursor, press.strokes, press.strokes - strokes + word->strokes, *way, clock_()};
    if (*after == before ||
        write({editor, range, std::move(before), std::move(*after), length, AXTextRange{newCursor, 0}, *way, {}})) {
        run_ = std::move(next);
    } else {
        run_.reset();
    }
}

/// Whether this press takes one word more: nothing has been typed, and the cursor not been moved, since the last one.
bool RetypingCommand::continues(const AXElement& editor, std::int64_t cursor, const Press& press) const {
    return run_ && clock_() - run_->last <= betweenPresses && run_->editor == editor && run_->cursor == cursor &&
           run_->strokes == press.strokes && run_->taken <= press.strokes;
}

/// False when nothing was written, which is then said.
bool RetypingCommand::write(Change change) {
    switch (platform_.accessibility->replaceText(change.editor, change.range, change.before, change.after)) {
    case AXReplacement::differs:
        say(texts::textIsNotWhatWasRead);
        return false;
    case AXReplacement::failed:
        say(texts::textCannotBeWritten);
        return false;
    case AXReplacement::done:
        break;
    }
    if (const auto current = platform_.inputSources->current()) {
        change.sourceBefore = current->id;
    }
    selectSource(change.way.to); // at once: the next key belongs to the new text
    confirm(change, 0);
    return true;
}

/// Reads back what was written. Some applications carry it out a moment after they have accepted it.
void RetypingCommand::confirm(const Change& change, int looks) {
    const AXTextRange written{change.range.location, change.length};
    if (platform_.accessibility->textIn(change.editor, written) == change.after) {
        if (selectionIn(*platform_.accessibility, change.editor) != change.selection) {
            platform_.accessibility->setAttribute(change.editor, "AXSelectedTextRange", change.selection);
        }
        if (const auto source = platform_.inputSources->current()) {
            say({texts::keyboardLanguage(source->localizedName), core::SelectedSource{source->localizedName}});
        }
    } else if (looks < maximumLooks) {
        platform_.mainQueue->postAfter(betweenLooks, [this, alive = pending_.watch(), change, looks] {
            if (alive) {
                confirm(change, looks + 1);
            }
        });
    } else {
        run_.reset();
        selectSource(change.sourceBefore);
        say(texts::textNotFixed);
    }
}

void RetypingCommand::selectSource(const std::string& id) {
    const auto current = platform_.inputSources->current();
    if (current && current->id != id) {
        static_cast<void>(platform_.inputSources->select(id)); // the report names the one that is in use then
    }
}

void RetypingCommand::say(const core::ChordOutcome& outcome) const {
    if (report) {
        report(outcome);
    }
}

} // namespace quillane
