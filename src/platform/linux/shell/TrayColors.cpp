// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/shell/TrayColors.hpp"

#include <QGuiApplication>
#include <QPalette>

#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

namespace quillane {

namespace {

template <typename T>
using Reply = std::unique_ptr<T, decltype([](T* reply) { std::free(reply); })>;

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace

QColor trayForegroundColor() {
    const QColor fallback = QGuiApplication::palette().color(QPalette::WindowText);
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11) {
        return fallback;
    }
    auto* connection = x11->connection();
    const auto selection = atom(connection, "_NET_SYSTEM_TRAY_S0");
    const Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr));
    if (!owner || owner->owner == XCB_WINDOW_NONE) {
        return fallback;
    }
    const auto colors = xcb_get_property(connection, 0, owner->owner, atom(connection, "_NET_SYSTEM_TRAY_COLORS"),
                                         XCB_ATOM_CARDINAL, 0, 12);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, colors, nullptr));
    if (!reply || reply->format != 32 || reply->value_len < 3) {
        return fallback;
    }
    const auto* channels = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    const auto channel = [&](int index) { return static_cast<int>((channels[index] >> 8U) & 0xFFU); };
    return {channel(0), channel(1), channel(2)};
}

} // namespace quillane
