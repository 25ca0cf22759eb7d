// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/X11Connection.hpp"

#include <cstdint>

namespace quillane {

/// A key or button as the device reported it.
struct X11RawEvent {
    bool isPress = false;
    std::uint8_t detail = 0;  ///< key code or button number
    std::uint16_t device = 0; ///< the physical or virtual device, not the master that it belongs to
    xcb_timestamp_t time = 0;
};

/// Keys and buttons of every device on the display, wherever the focus is and whoever has grabbed them (XInput protocol
/// 2.2, "Raw Events"). They arrive before the same events reach any application, and also while a grab freezes the
/// keyboard.
class X11RawInput {
public:
    using Handler = std::function<void(const X11RawEvent&)>;

    explicit X11RawInput(X11Connection& connection);

    /// False when the server is too old to report them.
    [[nodiscard]] bool isAvailable() const { return connection_.extensions().xinputOpcode != 0; }

    core::Subscription onKey(Handler handler) { return keys_.subscribe(std::move(handler)); }

    /// Button presses, while `observeButtons` is on.
    core::Subscription onButton(Handler handler) { return buttons_.subscribe(std::move(handler)); }

    /// A device was added, removed, enabled, disabled or attached to another master.
    core::Subscription onDevicesChanged(std::function<void()> handler) {
        return devices_.subscribe(std::move(handler));
    }

    void observeButtons(bool observe);

    /// Selects everything again.
    void select();

private:
    void handle(const xcb_generic_event_t& event);

    X11Connection& connection_;
    bool buttonsObserved_ = false;
    core::Listeners<const X11RawEvent&> keys_;
    core::Listeners<const X11RawEvent&> buttons_;
    core::Listeners<> devices_;
    core::Subscription events_;
    core::Subscription openings_;
};

} // namespace quillane
