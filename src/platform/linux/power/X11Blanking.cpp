// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/power/X11Blanking.hpp"

#include <string_view>

#include <xcb/screensaver.h>

namespace quillane {

namespace {

constexpr std::chrono::milliseconds firstAnswer{200};
constexpr std::string_view extensionName = "MIT-SCREEN-SAVER";

} // namespace

X11Blanking::X11Blanking(X11Connection& connection)
    : connection_(connection), openings_(connection.onOpened([this] { ask(); })) {
    ask();
}

void X11Blanking::ask() {
    answered_ = false;
    supported_ = false;
    // The server answers in order: with the reply to the second question, the reply that the library requests before an
    // extension's first request has arrived too, so the library does not wait for it.
    xcb_prefetch_extension_data(connection_.raw(), &xcb_screensaver_id);
    const auto present =
        xcb_query_extension(connection_.raw(), static_cast<std::uint16_t>(extensionName.size()), extensionName.data());
    connection_.await<xcb_query_extension_reply_t>(present, lifetime_, [this](const auto* extension) {
        if (extension == nullptr || extension->present == 0) {
            answered_ = true;
            return;
        }
        const auto version = xcb_screensaver_query_version(connection_.raw(), 1, 1);
        connection_.await<xcb_screensaver_query_version_reply_t>(version, lifetime_, [this](const auto* reply) {
            answered_ = true;
            supported_ = reply != nullptr && (reply->server_major_version > 1 || reply->server_minor_version >= 1);
            if (suspended_) {
                send(true); // on a connection that replaced a lost one
            }
        });
        connection_.flush();
    });
    connection_.flush();
}

bool X11Blanking::suspend() {
    for (int question = 0; !answered_ && question < 2; ++question) { // one request may follow from the other's answer
        connection_.settle(firstAnswer / 2);
    }
    if (!supported_ || connection_.isLost()) {
        return false;
    }
    suspended_ = true;
    send(true);
    return true;
}

void X11Blanking::resume() {
    suspended_ = false;
    if (supported_) {
        send(false);
    }
}

void X11Blanking::send(bool suspended) {
    xcb_screensaver_suspend(connection_.raw(), suspended ? 1 : 0);
    connection_.flush();
}

} // namespace quillane
