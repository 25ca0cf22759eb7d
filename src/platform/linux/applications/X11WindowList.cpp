// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/applications/X11WindowList.hpp"

#include "platform/linux/x11/X11Connection.hpp"
#include "platform/linux/x11/X11Properties.hpp"

#include <QGuiApplication>
#include <QRectF>
#include <QScreen>

#include <algorithm>
#include <array>
#include <utility>

namespace quillane {

namespace {

constexpr std::uint32_t maximumPropertyLength = 4096; // in units of four bytes

// The levels of such windows on macOS (CGWindowLevel.h), so that one rule applies to both.
constexpr int desktopLayer = -1;
constexpr int floatingLayer = 3;
constexpr int dockLayer = 20;

/// Qt scales every screen by its own factor and leaves its origin where the server has it.
core::ScreenRect inPoints(const QRectF& pixels) {
    const auto screens = qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr
                             ? QGuiApplication::screens()
                             : QList<QScreen*>();
    for (const auto* screen : screens) {
        const QPointF origin = screen->geometry().topLeft();
        const double factor = screen->devicePixelRatio();
        if (QRectF(origin, QSizeF(screen->geometry().size()) * factor).contains(pixels.center())) {
            const auto corner = origin + (pixels.topLeft() - origin) / factor;
            return {corner.x(), corner.y(), pixels.width() / factor, pixels.height() / factor};
        }
    }
    return {pixels.x(), pixels.y(), pixels.width(), pixels.height()};
}

} // namespace

/// The combined answers about all windows.
struct X11WindowList::Reading {
    struct Entry {
        xcb_window_t window = XCB_WINDOW_NONE;
        pid_t serverSaid = 0; ///< from the X-Resource extension, correct in containers too
        pid_t windowSaid = 0; ///< from _NET_WM_PID
        int layer = 0;
        bool visible = false;
        QRectF inside;                             ///< without the frame, in pixels
        std::array<std::uint32_t, 4> extents = {}; ///< of the frame: left, right, top, bottom
    };

    Handler handler;
    std::vector<Entry> entries; ///< from front to back

    void finish() const {
        std::vector<OnScreenWindow> windows;
        for (const auto& entry : entries) {
            const auto pid = entry.serverSaid > 0 ? entry.serverSaid : entry.windowSaid;
            if (pid > 0 && entry.visible && !entry.inside.isEmpty()) {
                const auto [left, right, top, bottom] = entry.extents;
                const auto outside =
                    entry.inside.adjusted(-static_cast<double>(left), -static_cast<double>(top), right, bottom);
                windows.push_back({.pid = pid, .layer = entry.layer, .bounds = inPoints(outside)});
            }
        }
        handler(windows);
    }
};

X11WindowList::X11WindowList(X11Connection& connection) : connection_(connection) {
    constexpr std::array<std::string_view, 8> names{"_NET_CLIENT_LIST_STACKING",
                                                    "_NET_WM_PID",
                                                    "_NET_FRAME_EXTENTS",
                                                    "_NET_WM_WINDOW_TYPE",
                                                    "_NET_WM_WINDOW_TYPE_DOCK",
                                                    "_NET_WM_WINDOW_TYPE_DESKTOP",
                                                    "_NET_WM_STATE",
                                                    "_NET_WM_STATE_ABOVE"};
    const auto atoms = connection.internAtoms(names);
    atoms_ = {atoms[0], atoms[1], atoms[2], atoms[3], atoms[4], atoms[5], atoms[6], atoms[7]};
}

void X11WindowList::read(Handler handler) {
    const auto reading = std::make_shared<Reading>(); // shared by the handlers of its answers
    reading->handler = std::move(handler);
    const auto cookie = xcb_get_property(connection_.raw(), 0, connection_.root(), atoms_.stacking, XCB_ATOM_WINDOW, 0,
                                         maximumPropertyLength);
    connection_.await<xcb_get_property_reply_t>(cookie, lifetime_, [this, reading](const auto* reply) {
        for (const auto window : items(reply)) {
            reading->entries.insert(reading->entries.begin(), Reading::Entry{.window = window});
        }
        readWindows(reading);
    });
    connection_.flush();
}

void X11WindowList::readWindows(const std::shared_ptr<Reading>& reading) {
    auto* c = connection_.raw();
    const auto property = [&](xcb_window_t window, xcb_atom_t name, xcb_atom_t type, auto take) {
        connection_.await<xcb_get_property_reply_t>(
            xcb_get_property(c, 0, window, name, type, 0, maximumPropertyLength), lifetime_,
            [reading, take](const xcb_get_property_reply_t* reply) { take(items(reply)); });
    };
    for (auto& entry : reading->entries) {
        const auto window = entry.window;
        if (connection_.extensions().hasClientIds) {
            const xcb_res_client_id_spec_t spec{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
            connection_.await<xcb_res_query_client_ids_reply_t>(
                xcb_res_query_client_ids(c, 1, &spec), lifetime_,
                [reading, &entry](const auto* reply) { entry.serverSaid = localProcess(reply); });
        }
        property(window, atoms_.pid, XCB_ATOM_CARDINAL, [&entry](std::span<const std::uint32_t> said) {
            entry.windowSaid = said.empty() ? 0 : static_cast<pid_t>(said.front());
        });
        property(window, atoms_.frameExtents, XCB_ATOM_CARDINAL, [&entry](std::span<const std::uint32_t> said) {
            if (said.size() == entry.extents.size()) {
                std::ranges::copy(said, entry.extents.begin());
            }
        });
        property(window, atoms_.state, XCB_ATOM_ATOM, [&entry, this](std::span<const std::uint32_t> said) {
            entry.layer = std::ranges::count(said, atoms_.above) > 0 ? floatingLayer : 0;
        });
        property(window, atoms_.type, XCB_ATOM_ATOM, [&entry, this](std::span<const std::uint32_t> said) {
            if (std::ranges::count(said, atoms_.dock) > 0) {
                entry.layer = dockLayer;
            } else if (std::ranges::count(said, atoms_.desktop) > 0) {
                entry.layer = desktopLayer;
            }
        });
        connection_.await<xcb_get_window_attributes_reply_t>(
            xcb_get_window_attributes(c, window), lifetime_, [reading, &entry](const auto* reply) {
                entry.visible = reply != nullptr && reply->map_state == XCB_MAP_STATE_VIEWABLE;
            });
        connection_.await<xcb_get_geometry_reply_t>(xcb_get_geometry(c, window), lifetime_,
                                                    [reading, &entry](const auto* reply) {
                                                        if (reply != nullptr) {
                                                            entry.inside.setSize(QSizeF(reply->width, reply->height));
                                                        }
                                                    });
        connection_.await<xcb_translate_coordinates_reply_t>(
            xcb_translate_coordinates(c, window, connection_.root(), 0, 0), lifetime_,
            [reading, &entry](const auto* reply) {
                if (reply != nullptr) {
                    entry.inside.moveTopLeft(QPointF(reply->dst_x, reply->dst_y));
                }
            });
    }
    // Answers come in the order of the questions: this one is the last.
    connection_.await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(c), lifetime_,
                                                   [reading](const auto*) { reading->finish(); });
}

} // namespace quillane
