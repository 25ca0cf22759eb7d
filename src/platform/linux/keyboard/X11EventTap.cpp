// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11EventTap.hpp"

#include "core/keyboard/RTLInputLanguage.hpp"

namespace quillane {

namespace {

constexpr core::KeyCode capsLockKey = 57;

constexpr std::uint64_t buttonTypes = maskBit(EventType::leftMouseDown) | maskBit(EventType::rightMouseDown) |
                                      maskBit(EventType::otherMouseDown) | maskBit(EventType::scrollWheel);

EventType buttonType(std::uint8_t button) {
    switch (button) {
    case 1:
        return EventType::leftMouseDown;
    case 3:
        return EventType::rightMouseDown;
    case 4: // up, down, left and right
    case 5:
    case 6:
    case 7:
        return EventType::scrollWheel;
    default:
        return EventType::otherMouseDown;
    }
}

} // namespace

X11EventTap::X11EventTap(const X11Session& session, InputSources& sources, MainQueue& mainQueue)
    : connection_(*session.connection),
      input_(*session.input),
      keyboard_(*session.keyboard),
      sources_(sources),
      rewriter_(connection_, input_, keyboard_,
                [this](const X11RawEvent& repeat) { return deliver(translated(repeat)).replacementText; }),
      watchdog_(
          connection_, input_, keyboard_, mainQueue, [this] { disable(); }, [this] { recover(); }),
      losses_(connection_.onLost([this] { disable(); })),
      sourceChanges_(sources.onChanged([this] { updateReplacing(); })) {}

X11EventTap::~X11EventTap() {
    stop();
}

bool X11EventTap::start(std::uint64_t mask, Receiver receiver) {
    stop();
    if (!input_.isAvailable() || mask == 0 || !receiver) {
        return false;
    }
    mask_ = mask;
    receiver_ = std::move(receiver);
    keys_ = keyboard_.onKey([this](const X11RawEvent& event) { handleKey(event); });
    capsLock_ = keyboard_.onCapsLockChanged(
        [this] { deliver({.type = EventType::flagsChanged, .keyCode = capsLockKey, .flags = keyboard_.flags()}); });
    if ((mask & buttonTypes) != 0) {
        buttons_ = input_.onButton([this](const X11RawEvent& event) { handleButton(event); });
        input_.observeButtons(true);
    }
    watchdog_.start();
    state_ = State::disabled;
    enable();
    return true;
}

void X11EventTap::stop() {
    if (state_ == State::stopped) {
        return;
    }
    state_ = State::stopped;
    watchdog_.stop();
    keys_.cancel();
    capsLock_.cancel();
    buttons_.cancel();
    input_.observeButtons(false);
    rewriter_.giveBack();
    receiver_ = nullptr;
}

void X11EventTap::enable() {
    if (state_ != State::disabled) {
        return;
    }
    state_ = State::recovering;
    if (connection_.isLost()) {
        return; // the watchdog asks as soon as the connection is back
    }
    input_.select();
    keyboard_.reread();
    if (watchdog_.serverAnswers()) {
        recover();
    }
}

void X11EventTap::recover() {
    if (state_ == State::recovering) {
        state_ = State::running;
        updateReplacing();
    }
}

void X11EventTap::disable() {
    if (state_ != State::running) {
        return;
    }
    state_ = State::disabled;
    deliver({.type = EventType::tapDisabledByTimeout});
}

void X11EventTap::setReplaceableKeys(std::span<const core::KeyCode> keys) {
    replaceableKeys_.clear();
    for (const auto key : keys) {
        if (const auto keycode = x11KeyCodes::keycode(key)) {
            replaceableKeys_.push_back(*keycode);
        }
    }
    updateReplacing();
}

void X11EventTap::hold() {
    if (state_ == State::running) {
        rewriter_.hold();
    }
}

void X11EventTap::updateReplacing() {
    const auto source = sources_.current();
    const bool replaces =
        state_ == State::running && source && core::rtlInputLanguage::isRightToLeft(source->languages);
    rewriter_.setKeys(replaces ? std::span<const xcb_keycode_t>(replaceableKeys_) : std::span<const xcb_keycode_t>());
}

InputEvent X11EventTap::translated(const X11RawEvent& event) const {
    InputEvent translated{.type = event.isPress ? EventType::keyDown : EventType::keyUp,
                          .keyCode = x11KeyCodes::macKeyCode(event.detail),
                          .flags = keyboard_.flags()};
    if (const auto* modifier = keyboard_.keymap().modifier(event.detail)) {
        translated.type = EventType::flagsChanged;
        translated.keyCode = modifier->keyCode;
    }
    return translated;
}

void X11EventTap::handleKey(const X11RawEvent& event) {
    const auto input = translated(event);
    if (rewriter_.isOwn(event.detail) || (input.type == EventType::flagsChanged && input.keyCode == capsLockKey)) {
        return; // Caps Lock is reported when the lock changes, as on a Mac
    }
    const auto received = deliver(input);
    if (received.type == EventType::keyDown) {
        rewriter_.remember(event, received.replacementText);
    }
}

void X11EventTap::handleButton(const X11RawEvent& event) {
    deliver({.type = buttonType(event.detail), .flags = keyboard_.flags()});
}

InputEvent X11EventTap::deliver(InputEvent event) {
    const auto bit = maskBit(event.type);
    if (receiver_ && (bit == 0 || (state_ == State::running && (mask_ & bit) != 0))) {
        receiver_(event);
    }
    return event;
}

} // namespace quillane
