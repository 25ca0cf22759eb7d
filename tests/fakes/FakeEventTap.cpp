// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fakes/FakeEventTap.hpp"

#include "core/keyboard/KeyHold.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace quillane::fakes {

namespace {

bool isKeyEvent(const InputEvent& event) {
    return event.type == EventType::keyDown || event.type == EventType::keyUp;
}

} // namespace

bool FakeEventTap::start(std::uint64_t mask, Receiver receiver) {
    if (receiving_ || exists()) {
        throw std::logic_error("The tap is started inside its receiver or while it exists");
    }
    note(journal, "start the tap");
    ++startCount_;
    if (!permitted_() || mask == 0 || !receiver) {
        return false;
    }
    mask_ = mask;
    receiver_ = std::move(receiver);
    enabled_ = !startsDisabled_;
    return true;
}

void FakeEventTap::stop() {
    if (receiving_) {
        throw std::logic_error("The tap is stopped inside its receiver");
    }
    if (exists()) {
        note(journal, "stop the tap");
    }
    letGo();
    receiver_ = nullptr;
    mask_ = 0;
    enabled_ = false;
}

void FakeEventTap::enable() {
    ++enableCount_;
    enabled_ = exists();
}

void FakeEventTap::setReplaceableKeys(std::span<const core::KeyCode> keys) {
    replaceableKeys_ = {keys.begin(), keys.end()};
}

void FakeEventTap::hold() {
    holding_ = isEnabled();
}

void FakeEventTap::letGo() {
    holding_ = false;
    for (const auto& event : std::exchange(held_, {})) {
        onLetGo_(event);
    }
}

/// A release is held back with its press.
bool FakeEventTap::holdsBack(const InputEvent& event) const {
    const auto isItsPress = [&](const InputEvent& held) {
        return held.type == EventType::keyDown && held.keyCode == event.keyCode;
    };
    return holding_ && ((event.type == EventType::keyDown && core::keyHold::holds(event.keyCode, event.flags)) ||
                        (event.type == EventType::keyUp && std::ranges::any_of(held_, isItsPress)));
}

void FakeEventTap::receive(InputEvent& event) {
    receiving_ = true;
    receiver_(event);
    receiving_ = false;
}

std::optional<InputEvent> FakeEventTap::send(InputEvent event) {
    event.replacementText.reset();
    const bool isHidden = isKeyEvent(event) && hidden_();
    if (isEnabled() && (mask_ & maskBit(event.type)) != 0 && !isHidden) {
        const auto sent = event;
        receive(event);
        const bool replaceable = isKeyEvent(sent) && replaceableKeys_.contains(sent.keyCode);
        const auto text = replaceable ? event.replacementText : std::nullopt;
        event = sent; // nothing but the text can be changed
        event.replacementText = text;
        if (holdsBack(event)) {
            held_.push_back(event);
            return std::nullopt;
        }
    }
    return event;
}

void FakeEventTap::disable(EventType reason) {
    if (!isEnabled()) {
        return;
    }
    enabled_ = false;
    InputEvent event{.type = reason, .keyCode = 0, .flags = 0, .replacementText = std::nullopt};
    receive(event);
}

} // namespace quillane::fakes
