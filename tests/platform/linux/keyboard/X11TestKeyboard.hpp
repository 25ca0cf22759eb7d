// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/X11Xkb.hpp"

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <xcb/xcb.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace quillane::testing {

/// Keys by their X key codes in the evdev numbering.
namespace key {

inline constexpr std::uint8_t digit1 = 10, q = 24, w = 25, e = 26, a = 38, s = 39, d = 40, z = 52, m = 58, space = 65,
                              leftControl = 37, rightControl = 105, leftShift = 50, rightShift = 62, leftAlt = 64,
                              rightAlt = 108, capsLock = 66, numLock = 77, leftSuper = 133, rightSuper = 134, f1 = 67,
                              printScreen = 107;

} // namespace key

/// Another user at the keyboard: a client that types, clicks and reads the server's state. Calls wait until the server
/// has executed them.
class X11TestKeyboard {
public:
    /// Chooses the keyboard device to type on.
    enum class Device { xtest, physical };

    X11TestKeyboard() : connection_(xcb_connect(nullptr, nullptr), xcb_disconnect) {
        if (xcb_connection_has_error(connection_.get()) != 0) {
            throw std::runtime_error("no X server");
        }
        root_ = xcb_setup_roots_iterator(xcb_get_setup(raw())).data->root;
        std::free(xcb_xkb_use_extension_reply(raw(), xcb_xkb_use_extension(raw(), 1, 0), nullptr));
        std::free(xcb_input_xi_query_version_reply(raw(), xcb_input_xi_query_version(raw(), 2, 2), nullptr));
        xcb_get_extension_data(raw(), &xcb_test_id);
        physical_ = deviceNamed("Xvfb keyboard");
    }

    [[nodiscard]] xcb_connection_t* raw() const { return connection_.get(); }

    [[nodiscard]] xcb_window_t root() const { return root_; }

    void use(Device device) { device_ = device; }

    void press(std::uint8_t keycode) { fake(keycode, true); }

    void release(std::uint8_t keycode) { fake(keycode, false); }

    void tap(std::uint8_t keycode) {
        press(keycode);
        release(keycode);
    }

    void click(std::uint8_t button) {
        xcb_test_fake_input(raw(), XCB_BUTTON_PRESS, button, 0, root_, 0, 0, 0);
        xcb_test_fake_input(raw(), XCB_BUTTON_RELEASE, button, 0, root_, 0, 0, 0);
        synchronize();
    }

    void lockGroup(unsigned group) {
        xcb_xkb_latch_lock_state(raw(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, static_cast<std::uint8_t>(group), 0, 0, 0);
        synchronize();
    }

    [[nodiscard]] unsigned group() const {
        auto* reply = xcb_xkb_get_state_reply(raw(), xcb_xkb_get_state(raw(), XCB_XKB_ID_USE_CORE_KBD), nullptr);
        const unsigned group = reply != nullptr ? reply->group : 99;
        std::free(reply);
        return group;
    }

    /// The key codes that are pressed according to the server.
    [[nodiscard]] std::vector<int> keysDown() const {
        std::vector<int> down;
        auto* reply = xcb_query_keymap_reply(raw(), xcb_query_keymap(raw()), nullptr);
        for (int i = 0; reply != nullptr && i < 256; ++i) {
            if ((reply->keys[i / 8] >> (i % 8) & 1) != 0) {
                down.push_back(i);
            }
        }
        std::free(reply);
        return down;
    }

    void synchronize() const { std::free(xcb_get_input_focus_reply(raw(), xcb_get_input_focus(raw()), nullptr)); }

    /// The number of a device; 0 when there is none with this name.
    [[nodiscard]] std::uint16_t deviceNamed(std::string_view name) const {
        std::uint16_t found = 0;
        auto* reply =
            xcb_input_xi_query_device_reply(raw(), xcb_input_xi_query_device(raw(), XCB_INPUT_DEVICE_ALL), nullptr);
        for (auto it = xcb_input_xi_query_device_infos_iterator(reply); it.rem > 0;
             xcb_input_xi_device_info_next(&it)) {
            if (std::string_view(xcb_input_xi_device_info_name(it.data), it.data->name_len) == name) {
                found = it.data->deviceid;
            }
        }
        std::free(reply);
        return found;
    }

private:
    void fake(std::uint8_t keycode, bool press) {
        // XTest takes the events of the first XInput protocol for keys of a device that is named.
        const auto firstDeviceEvent = xcb_get_extension_data(raw(), &xcb_input_id)->first_event;
        const bool named = device_ == Device::physical;
        const int type = named ? firstDeviceEvent + (press ? XCB_INPUT_DEVICE_KEY_PRESS : XCB_INPUT_DEVICE_KEY_RELEASE)
                               : (press ? XCB_KEY_PRESS : XCB_KEY_RELEASE);
        xcb_test_fake_input(raw(), static_cast<std::uint8_t>(type), keycode, 0, root_, 0, 0,
                            named ? static_cast<std::uint8_t>(physical_) : std::uint8_t{0});
        synchronize();
    }

    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection_;
    xcb_window_t root_ = 0;
    std::uint16_t physical_ = 0;
    Device device_ = Device::physical;
};

} // namespace quillane::testing
