// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11KeyRewriter.hpp"

#include "core/keyboard/KeyHold.hpp"

#include <algorithm>

#include <xcb/xcbext.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon.h>

namespace quillane {

namespace {

constexpr std::uint32_t grabbedEvents =
    XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE |
    // A client that holds a grab gets its raw events through it, and only those selected there.
    XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;

constexpr std::chrono::milliseconds stopTimeout{1000}; ///< without any progress
constexpr std::chrono::milliseconds mapTimeout{150};   ///< another program may change the map without end
constexpr std::uint16_t highestXTestDevice = 127;

/// Letters, digits, punctuation, space, Return, Tab, Delete, the key pad, arrows.
bool typesOrMoves(xcb_keycode_t keycode) {
    return core::keyHold::holds(x11KeyCodes::macKeyCode(keycode), 0);
}

} // namespace

X11KeyRewriter::X11KeyRewriter(X11Connection& connection, X11RawInput& input, X11Keyboard& keyboard, Decide decide)
    : connection_(connection),
      keyboard_(keyboard),
      decide_(std::move(decide)),
      spares_(connection, keyboard),
      guard_(connection, [this] { resume(); }),
      events_(connection.onEvent([this](const xcb_generic_event_t& event) { handleEvent(event); })),
      ownKeys_(input.onKey([this](const X11RawEvent& event) { handleOwnKey(event); })),
      readings_(keyboard.onCurrent([this] {
          grabKeys(); // Num Lock may be another modifier
          if (const auto press = std::exchange(waiting_, std::nullopt)) {
              mapTimer_.stop();
              answer(*press);
          }
          typeBacklog();
      })),
      losses_(connection.onLost([this] { forget(); })),
      openings_(connection.onOpened([this] { grabKeys(); })) {
    retry_.setSingleShot(true);
    retry_.callOnTimeout([this] { typeBacklog(); });
    stopTimer_.setSingleShot(true);
    stopTimer_.callOnTimeout([this] {
        endStopAtTypingKeys();
        forgetOutputs();
    });
    mapTimer_.setSingleShot(true);
    mapTimer_.callOnTimeout([this] {
        if (const auto press = std::exchange(waiting_, std::nullopt)) {
            letThrough(press->master);
        }
    });
}

X11KeyRewriter::~X11KeyRewriter() {
    giveBack();
}

void X11KeyRewriter::setKeys(std::span<const xcb_keycode_t> keys) {
    if (!std::ranges::equal(keys, keys_)) {
        ungrabKeys();
        keys_.assign(keys.begin(), keys.end());
        grabKeys();
    }
}

void X11KeyRewriter::remember(const X11RawEvent& press, std::optional<char16_t> replacement) {
    decisions_[press.detail] = {press.time, press.device, replacement};
}

void X11KeyRewriter::hold() {
    if (!holding_ && !connection_.isLost() && spares_.canType()) {
        holding_ = true;
        stopAtTypingKeys(keyboard_.lockedModifiers());
        connection_.flush();
    }
}

void X11KeyRewriter::letGo() {
    if (!std::exchange(holding_, false)) {
        return;
    }
    if (isBehind()) {
        stopTimer_.start(stopTimeout);
        typeBacklog();
    } else {
        endStopAtTypingKeys();
    }
}

void X11KeyRewriter::giveBack() {
    ungrabKeys();
    keys_.clear();
    endStopAtTypingKeys();
    if (!connection_.isLost()) {
        // The server may have stopped at a press that has not been read yet.
        letThrough(keyboard_.device());
        xcb_input_xi_ungrab_device(connection_.raw(), XCB_CURRENT_TIME, keyboard_.device());
    }
    forget();
    spares_.giveBack();
    connection_.flush();
}

void X11KeyRewriter::forget() {
    guard_.disarm();
    waiting_.reset();
    mapTimer_.stop();
    forgetOutputs();
    holding_ = false;
    looking_ = false;
    typingGrabs_.clear();
    keyModifiers_.clear();
}

void X11KeyRewriter::forgetOutputs() {
    for (const auto keycode : std::exchange(outputs_, {})) {
        spares_.release(keycode);
    }
    backlog_.clear();
    stopTimer_.stop();
    retry_.stop();
}

/// Begins again after the guard let the keyboard go: nothing is grabbed, and no press waits for an answer. What was
/// held back is typed.
void X11KeyRewriter::resume() {
    if (guard_.takeLetGo() && !connection_.isLost()) {
        auto held = holding_ ? std::exchange(backlog_, {}) : std::deque<Output>();
        forget();
        grabKeys();
        backlog_ = std::move(held);
        typeBacklog();
    }
}

void X11KeyRewriter::handleEvent(const xcb_generic_event_t& event) {
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    const bool isXInput =
        (event.response_type & 0x7f) == XCB_GE_GENERIC && generic.extension == connection_.extensions().xinputOpcode;
    if (isXInput && (generic.event_type == XCB_INPUT_KEY_PRESS || generic.event_type == XCB_INPUT_KEY_RELEASE)) {
        resume();
        handleGrabbed(reinterpret_cast<const xcb_input_key_press_event_t&>(event),
                      generic.event_type == XCB_INPUT_KEY_PRESS);
    }
}

void X11KeyRewriter::handleGrabbed(const xcb_input_key_press_event_t& event, bool isPress) {
    if (!guard_.mayAnswer(event.full_sequence)) {
        return;
    }
    const auto keycode = static_cast<xcb_keycode_t>(event.detail);
    const auto modifierBits = static_cast<std::uint8_t>(event.mods.effective);
    if (std::exchange(looking_, false)) {
        if (isPress && spares_.isSpare(keycode)) {
            letThrough(event.deviceid);
            return;
        }
        stopAtTypingKeys(modifierBits);
        if (!isPress || keyboard_.keymap().modifier(keycode) != nullptr) {
            letThrough(event.deviceid);
            return;
        }
    } else if (!isPress) {
        return;
    }
    answer({keycode, event.deviceid, event.time, event.group.effective, modifierBits,
            (event.flags & XCB_INPUT_KEY_EVENT_FLAGS_KEY_REPEAT) != 0, event.full_sequence});
}

void X11KeyRewriter::answer(const Press& press) {
    if (!keyboard_.isCurrent()) {
        waiting_ = press;
        mapTimer_.start(mapTimeout);
        return;
    }
    const auto keysym = wantedKeysym(press); // may ask another program
    if (!guard_.mayAnswer(press.sequence)) {
        return;
    }
    if (keysym != 0 && spares_.canType()) {
        substitute(press, {keysym, decisions_[press.keycode].device});
    } else {
        letThrough(press.master);
    }
}

std::uint32_t X11KeyRewriter::wantedKeysym(const Press& press) {
    const auto& decision = decisions_[press.keycode];
    std::optional<char16_t> replacement;
    if (press.isRepeat && std::ranges::find(keys_, press.keycode) != keys_.end()) {
        replacement = decide_({true, press.keycode, decision.device, press.time});
    } else if (press.time == decision.time) {
        replacement = decision.replacement;
    }
    if (replacement) {
        return xkb_utf32_to_keysym(*replacement);
    }
    return isBehind() || holding_ ? keyboard_.keymap().keysym(press.keycode, press.group, press.modifierBits) : 0;
}

void X11KeyRewriter::substitute(const Press& press, const Output& output) {
    auto* const c = connection_.raw();
    const bool waits = holding_ || !backlog_.empty() || !typingGrabs_.empty();
    const auto keycode = waits ? std::nullopt : spares_.keycodeFor(output.keysym);
    if (!keycode) {
        stopAtTypingKeys(press.modifierBits);
        backlog_.push_back(output);
        typeBacklog();
        xcb_input_xi_ungrab_device(c, XCB_CURRENT_TIME, press.master);
        connection_.flush();
        return;
    }
    outputs_.push_back(*keycode);
    // The grab by the key would end at the key's release, which may be waiting in the server.
    const auto cookie =
        xcb_input_xi_grab_device(c, connection_.root(), XCB_CURRENT_TIME, XCB_CURSOR_NONE, press.master,
                                 XCB_INPUT_GRAB_MODE_22_SYNC, XCB_INPUT_GRAB_MODE_22_ASYNC, 0, 1, &grabbedEvents);
    xcb_discard_reply(c, cookie.sequence);
    type(*keycode, output.device);
    xcb_input_xi_allow_events(c, XCB_CURRENT_TIME, press.master, XCB_INPUT_EVENT_MODE_SYNC_DEVICE, 0, XCB_NONE);
    looking_ = true;
    connection_.await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(c), lifetime_,
                                                   [this, look = ++looks_, master = press.master,
                                                    typed = *keycode](const auto*) { checkLook(look, master, typed); });
    connection_.flush();
}

void X11KeyRewriter::typeBacklog() {
    while (!holding_ && !backlog_.empty() && keyboard_.isCurrent()) {
        const auto keycode = spares_.keycodeFor(backlog_.front().keysym);
        if (!keycode) {
            retry_.start(X11SpareKeys::minimumStay / 4);
            return;
        }
        outputs_.push_back(*keycode);
        type(*keycode, backlog_.front().device);
        backlog_.pop_front();
        connection_.flush();
    }
}

void X11KeyRewriter::checkLook(std::uint64_t look, std::uint16_t master, xcb_keycode_t keycode) {
    resume();
    if (!looking_ || look != looks_) {
        return;
    }
    // Nothing arrived: the device of the key has gone. XTest's own always exists.
    looking_ = false;
    xcb_input_xi_ungrab_device(connection_.raw(), XCB_CURRENT_TIME, master);
    type(keycode, 0);
    connection_.flush();
}

void X11KeyRewriter::handleOwnKey(const X11RawEvent& event) {
    resume();
    const auto found = event.isPress ? std::ranges::find(outputs_, event.detail) : outputs_.end();
    if (found == outputs_.end()) {
        return;
    }
    for (auto it = outputs_.begin(); it != std::next(found); ++it) {
        spares_.release(*it);
    }
    outputs_.erase(outputs_.begin(), std::next(found));
    typeBacklog();
    if (holding_) {
        return;
    }
    if (!isBehind()) {
        endStopAtTypingKeys();
    } else if (!typingGrabs_.empty()) {
        stopTimer_.start(stopTimeout);
    }
}

void X11KeyRewriter::type(xcb_keycode_t keycode, std::uint16_t device) {
    // On the device that the key was pressed on: another one would activate its own map, and every application would
    // read that. For keys of a named device, XTest takes the events of the first XInput protocol.
    const auto firstEvent = connection_.extensions().xinputFirstEvent;
    const bool named = device != 0 && device <= highestXTestDevice;
    const int press = named ? firstEvent + XCB_INPUT_DEVICE_KEY_PRESS : XCB_KEY_PRESS;
    const int release = named ? firstEvent + XCB_INPUT_DEVICE_KEY_RELEASE : XCB_KEY_RELEASE;
    for (const int event : {press, release}) {
        xcb_test_fake_input(connection_.raw(), static_cast<std::uint8_t>(event), keycode, XCB_CURRENT_TIME,
                            connection_.root(), 0, 0, named ? static_cast<std::uint8_t>(device) : std::uint8_t{0});
    }
}

void X11KeyRewriter::letThrough(std::uint16_t master) {
    xcb_input_xi_allow_events(connection_.raw(), XCB_CURRENT_TIME, master, XCB_INPUT_EVENT_MODE_REPLAY_DEVICE, 0,
                              XCB_NONE);
    connection_.flush();
}

void X11KeyRewriter::grab(xcb_keycode_t keycode, std::span<const std::uint32_t> modifiers) {
    // An XInput grab rather than one of the core protocol: the server takes the group out of the state of a press that
    // was stopped by the latter, and applications would read it as one of the first layout. On the one master rather
    // than on all of them, which the server takes for pointers: it would not stop.
    const auto cookie = xcb_input_xi_passive_grab_device(
        connection_.raw(), XCB_CURRENT_TIME, connection_.root(), XCB_CURSOR_NONE, keycode, keyboard_.device(),
        static_cast<std::uint16_t>(modifiers.size()), 1, XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_SYNC,
        XCB_INPUT_GRAB_MODE_22_ASYNC, 0, &grabbedEvents, modifiers.data());
    xcb_discard_reply(connection_.raw(), cookie.sequence); // keys grabbed by another program stay with it
}

void X11KeyRewriter::ungrab(xcb_keycode_t keycode, std::span<const std::uint32_t> modifiers) {
    xcb_input_xi_passive_ungrab_device(connection_.raw(), connection_.root(), keycode, keyboard_.device(),
                                       static_cast<std::uint16_t>(modifiers.size()), XCB_INPUT_GRAB_TYPE_KEYCODE,
                                       modifiers.data());
}

void X11KeyRewriter::grabKeys() {
    const std::uint32_t numLock = keyboard_.keymap().numLock();
    const std::vector<std::uint32_t> modifiers{XCB_MOD_MASK_SHIFT, XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_LOCK,
                                               XCB_MOD_MASK_SHIFT | numLock,
                                               XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_LOCK | numLock};
    if (modifiers == keyModifiers_ || connection_.isLost()) {
        return;
    }
    ungrabKeys();
    for (const auto keycode : keys_) {
        grab(keycode, modifiers);
    }
    keyModifiers_ = modifiers;
    guardGrabs();
    connection_.flush();
}

void X11KeyRewriter::ungrabKeys() {
    for (const auto keycode : keys_) {
        if (!keyModifiers_.empty()) {
            ungrab(keycode, keyModifiers_);
        }
    }
    keyModifiers_.clear();
    guardGrabs();
    connection_.flush();
}

void X11KeyRewriter::guardGrabs() {
    if (!typingGrabs_.empty() || (!keys_.empty() && !keyModifiers_.empty())) {
        guard_.arm(keyboard_.device());
    } else {
        guard_.disarm();
    }
}

void X11KeyRewriter::stopAtTypingKeys(std::uint8_t modifierBits) {
    const auto locks = static_cast<std::uint32_t>(modifierBits & ~XCB_MOD_MASK_SHIFT);
    if (!holding_) {
        stopTimer_.start(stopTimeout);
    }
    if (!typingGrabs_.empty()) {
        return;
    }
    const auto& keymap = keyboard_.keymap();
    for (unsigned code = keymap.firstKeycode(); code <= keymap.lastKeycode(); ++code) {
        const auto keycode = static_cast<xcb_keycode_t>(code);
        const bool mayBeSpare = keymap.isFree(keycode) || spares_.isSpare(keycode);
        if (!typesOrMoves(keycode) || keymap.modifier(keycode) != nullptr || mayBeSpare) {
            continue;
        }
        auto& added = typingGrabs_.emplace_back(TypingGrab{keycode, {locks}});
        if (std::ranges::find(keys_, keycode) == keys_.end()) {
            added.modifiers.push_back(locks | XCB_MOD_MASK_SHIFT);
        }
        grab(keycode, added.modifiers);
    }
    guardGrabs();
}

void X11KeyRewriter::endStopAtTypingKeys() {
    for (const auto& added : std::exchange(typingGrabs_, {})) {
        ungrab(added.keycode, added.modifiers);
    }
    guardGrabs();
    stopTimer_.stop();
    connection_.flush();
}

} // namespace quillane
