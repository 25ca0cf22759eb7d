// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/X11Xkb.hpp"

#include <atomic>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <poll.h>

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

namespace quillane::testing {

/// An application with the focus, on a thread of its own. It types the events that it receives, as toolkits do: it
/// reads the keyboard map again at each notice, and takes modifiers and group from the event.
class X11TestClient {
public:
    X11TestClient() : connection_(xcb_connect(nullptr, nullptr)) {
        auto* c = connection_.get();
        const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
        xkb_x11_setup_xkb_extension(c, 1, 0, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &xkbFirstEvent_,
                                    nullptr);
        constexpr std::uint16_t mapEvents = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
        xcb_xkb_select_events(c, XCB_XKB_ID_USE_CORE_KBD, mapEvents, 0, mapEvents, 0xff, 0xff, nullptr);
        context_.reset(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
        readMap();
        const std::uint32_t values[] = {1, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE};
        window_ = xcb_generate_id(c);
        xcb_create_window(c, XCB_COPY_FROM_PARENT, window_, screen->root, 0, 0, 100, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(c, window_);
        synchronize();
        xcb_set_input_focus(c, XCB_INPUT_FOCUS_NONE, window_, XCB_CURRENT_TIME);
        synchronize();
        thread_ = std::thread([this] { read(); });
    }

    X11TestClient(const X11TestClient&) = delete;
    X11TestClient& operator=(const X11TestClient&) = delete;

    ~X11TestClient() {
        ends_ = true;
        thread_.join();
    }

    /// What has been typed so far, in UTF-8.
    [[nodiscard]] std::string text() const {
        const std::lock_guard lock(mutex_);
        return text_;
    }

    /// Key codes that were pressed and not released, according to the events.
    [[nodiscard]] std::vector<int> keysDown() const {
        const std::lock_guard lock(mutex_);
        return down_;
    }

    /// How often the map has been read.
    [[nodiscard]] int mapReadings() const {
        const std::lock_guard lock(mutex_);
        return mapReadings_;
    }

    void clear() {
        const std::lock_guard lock(mutex_);
        text_.clear();
    }

private:
    template <auto Function>
    struct Deleter {
        template <typename T>
        void operator()(T* object) const {
            Function(object);
        }
    };

    void synchronize() {
        std::free(xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
    }

    void readMap() {
        auto* c = connection_.get();
        map_.reset(xkb_x11_keymap_new_from_device(context_.get(), c, xkb_x11_get_core_keyboard_device_id(c),
                                                  XKB_KEYMAP_COMPILE_NO_FLAGS));
        state_.reset(xkb_state_new(map_.get()));
        ++mapReadings_;
    }

    void read() {
        pollfd descriptor{xcb_get_file_descriptor(connection_.get()), POLLIN, 0};
        while (!ends_ && xcb_connection_has_error(connection_.get()) == 0) {
            while (auto* event = xcb_poll_for_event(connection_.get())) {
                const std::lock_guard lock(mutex_);
                handle(*event);
                std::free(event);
            }
            poll(&descriptor, 1, 10);
        }
    }

    void handle(const xcb_generic_event_t& event) {
        const auto type = event.response_type & 0x7f;
        if (type == xkbFirstEvent_) {
            readMap();
        } else if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
            const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
            std::erase(down_, static_cast<int>(key.detail));
            if (type == XCB_KEY_PRESS) {
                down_.push_back(key.detail);
                xkb_state_update_mask(state_.get(), key.state & 0xff, 0, 0, 0, 0, key.state >> 13 & 3);
                char buffer[16];
                xkb_state_key_get_utf8(state_.get(), key.detail, buffer, sizeof buffer);
                text_ += buffer;
            }
        }
    }

    std::unique_ptr<xcb_connection_t, Deleter<xcb_disconnect>> connection_;
    std::unique_ptr<xkb_context, Deleter<xkb_context_unref>> context_;
    std::unique_ptr<xkb_keymap, Deleter<xkb_keymap_unref>> map_;
    std::unique_ptr<xkb_state, Deleter<xkb_state_unref>> state_;
    std::uint8_t xkbFirstEvent_ = 0;
    xcb_window_t window_ = 0;
    mutable std::mutex mutex_; ///< guards the following
    std::string text_;
    std::vector<int> down_;
    int mapReadings_ = 0;
    std::atomic<bool> ends_ = false;
    std::thread thread_;
};

} // namespace quillane::testing
