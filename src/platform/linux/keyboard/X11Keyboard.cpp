// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11Keyboard.hpp"

#include "platform/linux/x11/X11Xkb.hpp"

namespace quillane {

namespace {

constexpr std::uint16_t stateParts = XCB_XKB_STATE_PART_MODIFIER_BASE | XCB_XKB_STATE_PART_MODIFIER_LOCK |
                                     XCB_XKB_STATE_PART_GROUP_STATE | XCB_XKB_STATE_PART_GROUP_LOCK;

/// The modifiers whose physical state X reports without naming the key.
constexpr std::uint8_t comparedModifiers = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;

} // namespace

X11Keyboard::X11Keyboard(X11Connection& connection, X11RawInput& input)
    : connection_(connection),
      inputKeys_(input.onKey([this](const X11RawEvent& event) { handleKey(event); })),
      inputDevices_(input.onDevicesChanged([this] { stateReading_.request(); })),
      events_(connection.onEvent([this](const xcb_generic_event_t& event) { handleEvent(event); })),
      losses_(connection.onLost([this] { lifetime_.end(); })),
      openings_(connection.onOpened([this] { reread(); })) {
    reread();
}

void X11Keyboard::reread() {
    lifetime_.restart();
    keymapReading_.abandon();
    stateReading_.abandon();
    lockRequest_.reset();
    xcb_xkb_select_events_details_t details{};
    details.affectState = stateParts;
    details.stateDetails = stateParts;
    details.affectNames = XCB_XKB_NAME_DETAIL_GROUP_NAMES;
    details.namesDetails = XCB_XKB_NAME_DETAIL_GROUP_NAMES;
    constexpr std::uint16_t whole = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t parts = XCB_XKB_EVENT_TYPE_STATE_NOTIFY | XCB_XKB_EVENT_TYPE_NAMES_NOTIFY;
    xcb_xkb_select_events_aux(connection_.raw(), XCB_XKB_ID_USE_CORE_KBD, whole | parts, 0, whole,
                              X11Keymap::neededParts, X11Keymap::neededParts, &details);
    keymapReading_.request();
    stateReading_.request();
}

void X11Keyboard::sendKeymap() {
    const auto cookie = xcb_xkb_get_map(connection_.raw(), XCB_XKB_ID_USE_CORE_KBD, X11Keymap::neededParts, 0, 0, 0, 0,
                                        0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    connection_.await<xcb_xkb_get_map_reply_t>(cookie, lifetime_, [this](const xcb_xkb_get_map_reply_t* reply) {
        if (reply != nullptr) {
            keymap_ = X11Keymap(*reply);
            updateDownFlags();
        }
        finishLoading(keymapReading_);
    });
    connection_.flush();
}

void X11Keyboard::sendState() {
    const auto cookie = xcb_xkb_get_state(connection_.raw(), XCB_XKB_ID_USE_CORE_KBD);
    connection_.await<xcb_xkb_get_state_reply_t>(
        cookie, lifetime_, [this, sequence = cookie.sequence](const xcb_xkb_get_state_reply_t* reply) {
            if (reply != nullptr) {
                device_ = reply->deviceID;
                takeLocks(reply->lockedMods);
                takeGroup(reply->group, sequence, Cause::request);
            }
        });
    connection_.await<xcb_query_keymap_reply_t>(xcb_query_keymap(connection_.raw()), lifetime_,
                                                [this](const xcb_query_keymap_reply_t* reply) {
                                                    for (unsigned i = 0; reply != nullptr && i < down_.size(); ++i) {
                                                        down_[i] = (reply->keys[i / 8] >> (i % 8) & 1) != 0;
                                                    }
                                                    updateDownFlags();
                                                    finishLoading(stateReading_);
                                                });
    connection_.flush();
}

void X11Keyboard::finishLoading(X11Reading& reading) {
    reading.finish();
    if (isCurrent()) {
        readings_.notify();
    }
}

core::EventFlags X11Keyboard::flags() const {
    return downFlags_ | ((lockedModifiers_ & XCB_MOD_MASK_LOCK) != 0 ? core::flags::capsLock : 0);
}

void X11Keyboard::updateDownFlags() {
    downFlags_ = 0;
    for (unsigned i = 0; i < down_.size(); ++i) {
        const auto* modifier = keymap_.modifier(static_cast<xcb_keycode_t>(i));
        if (down_[i] && modifier != nullptr) {
            downFlags_ |= modifier->flags;
        }
    }
}

std::uint8_t X11Keyboard::modifierBitsDown() const {
    std::uint8_t bits = 0;
    for (unsigned i = 0; i < down_.size(); ++i) {
        bits |= down_[i] ? keymap_.modifierBit(static_cast<xcb_keycode_t>(i)) : std::uint8_t{0};
    }
    return bits;
}

void X11Keyboard::lockGroup(unsigned group) {
    if (connection_.isLost()) {
        return;
    }
    const auto cookie = xcb_xkb_latch_lock_state(connection_.raw(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1,
                                                 static_cast<std::uint8_t>(group), 0, 0, 0);
    connection_.flush();
    lockRequest_ = cookie.sequence;
    if (group != group_) {
        group_ = group;
        groups_.notify(Cause::request);
    }
}

void X11Keyboard::handleKey(const X11RawEvent& event) {
    told_ = flags();
    down_[event.detail] = event.isPress;
    if (keymap_.modifier(event.detail) != nullptr) {
        updateDownFlags();
    }
    keys_.notify(event);
    told_.reset();
}

void X11Keyboard::handleEvent(const xcb_generic_event_t& event) {
    if (connection_.extensions().xkbFirstEvent == 0 ||
        (event.response_type & 0x7f) != connection_.extensions().xkbFirstEvent) {
        return;
    }
    // All XKB events have one code; the next byte distinguishes them.
    switch (event.pad0) {
    case XCB_XKB_STATE_NOTIFY:
        handleState(reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event), event.full_sequence);
        break;
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
    case XCB_XKB_NAMES_NOTIFY:
        layoutNotices_.notify();
        keymapReading_.request();
        break;
    case XCB_XKB_MAP_NOTIFY:
        keymapReading_.request();
        break;
    default:
        break;
    }
}

void X11Keyboard::handleState(const xcb_xkb_state_notify_event_t& event, std::uint32_t sequence) {
    if ((event.baseMods & comparedModifiers) != (modifierBitsDown() & comparedModifiers) && isCurrent()) {
        stateReading_
            .request(); // a key went up or down without an event, for example when the virtual terminal was left
    }
    takeLocks(event.lockedMods);
    takeGroup(event.group, sequence, event.keycode != 0 ? Cause::key : Cause::request);
}

void X11Keyboard::takeLocks(std::uint8_t modifiers) {
    const auto changed = std::exchange(lockedModifiers_, modifiers) ^ modifiers;
    if ((changed & XCB_MOD_MASK_LOCK) != 0) {
        capsLocks_.notify();
    }
}

void X11Keyboard::takeGroup(unsigned group, std::uint32_t sequence, Cause cause) {
    if (lockRequest_ && static_cast<std::int32_t>(sequence - *lockRequest_) < 0) {
        return; // the state before our own request
    }
    lockRequest_.reset();
    if (std::exchange(group_, group) != group) {
        groups_.notify(cause);
    }
}

} // namespace quillane
