// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11RawInput.hpp"

#include <xcb/xinput.h>

namespace quillane {

namespace {

/// An event mask in wire format: the header, then one word of mask.
struct EventMask {
    xcb_input_event_mask_t header;
    std::uint32_t mask;
};

} // namespace

X11RawInput::X11RawInput(X11Connection& connection)
    : connection_(connection),
      events_(connection.onEvent([this](const xcb_generic_event_t& event) { handle(event); })),
      openings_(connection.onOpened([this] { select(); })) {
    select();
}

void X11RawInput::observeButtons(bool observe) {
    buttonsObserved_ = observe;
    select();
}

void X11RawInput::select() {
    if (!isAvailable()) {
        return;
    }
    std::uint32_t raw = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;
    if (buttonsObserved_) {
        raw |= XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS;
    }
    const EventMask masters{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, raw};
    const EventMask all{{XCB_INPUT_DEVICE_ALL, 1}, XCB_INPUT_XI_EVENT_MASK_HIERARCHY};
    xcb_input_xi_select_events(connection_.raw(), connection_.root(), 1, &masters.header);
    xcb_input_xi_select_events(connection_.raw(), connection_.root(), 1, &all.header);
    connection_.flush();
}

void X11RawInput::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_GE_GENERIC) {
        return;
    }
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (!isAvailable() || generic.extension != connection_.extensions().xinputOpcode) {
        return;
    }
    if (generic.event_type == XCB_INPUT_HIERARCHY) {
        devices_.notify();
        return;
    }
    const bool isKey = generic.event_type == XCB_INPUT_RAW_KEY_PRESS || generic.event_type == XCB_INPUT_RAW_KEY_RELEASE;
    if (!isKey && generic.event_type != XCB_INPUT_RAW_BUTTON_PRESS) {
        return;
    }
    // Key and button events begin with the same fields.
    const auto& raw = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
    if (raw.detail > 0xff) {
        return;
    }
    const X11RawEvent decoded{generic.event_type != XCB_INPUT_RAW_KEY_RELEASE, static_cast<std::uint8_t>(raw.detail),
                              raw.sourceid, raw.time};
    (isKey ? keys_ : buttons_).notify(decoded);
}

} // namespace quillane
