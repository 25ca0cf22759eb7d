// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// An application with one plain window, for tests of what the X server and a window manager report about applications.
//
//     window_standin CLASS [--no-close] [--no-pid] [--hidden] [--content X Y WIDTH HEIGHT]
//
// Prints the window's number when it is on the screen, or made when it stays hidden. Ends when its window is asked to
// close, with status 0.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include <csignal>
#include <poll.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <xcb/xcb.h>

namespace {

xcb_atom_t atom(xcb_connection_t* c, const char* name) {
    const auto cookie = xcb_intern_atom(c, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(c, cookie, nullptr), &std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace

int main(int count, char** arguments) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (count < 2) {
        return 2;
    }
    bool closes = true;
    bool announcesPid = true;
    bool isHidden = false;
    // As the first four items of WM_NORMAL_HINTS have it.
    std::array<std::uint32_t, 4> content{0, 0, 100, 100};
    bool placed = false;
    for (int i = 2; i < count; ++i) {
        if (std::strcmp(arguments[i], "--content") == 0 && i + 4 < count) {
            placed = true;
            for (auto& number : content) {
                number = static_cast<std::uint32_t>(std::stoul(arguments[++i]));
            }
            continue;
        }
        closes = closes && std::strcmp(arguments[i], "--no-close") != 0;
        announcesPid = announcesPid && std::strcmp(arguments[i], "--no-pid") != 0;
        isHidden = isHidden || std::strcmp(arguments[i], "--hidden") == 0;
    }
    auto* c = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(c) != 0) {
        return 1;
    }
    const auto* screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
    const auto window = xcb_generate_id(c);
    const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_create_window(c, XCB_COPY_FROM_PARENT, window, screen->root, static_cast<std::int16_t>(content[0]),
                      static_cast<std::int16_t>(content[1]), static_cast<std::uint16_t>(content[2]),
                      static_cast<std::uint16_t>(content[3]), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_EVENT_MASK, &events);
    if (placed) {
        constexpr std::uint32_t userPosition = 1;
        constexpr std::uint32_t userSize = 2;
        constexpr std::uint32_t staticGravity = 10;
        std::array<std::uint32_t, 18> hints{userPosition | userSize | 512U, content[0], content[1], content[2],
                                            content[3]};
        hints.back() = staticGravity; // the place is that of the content, not of the frame
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 32,
                            static_cast<std::uint32_t>(hints.size()), hints.data());
    }
    const std::string name = arguments[1];
    const std::string both = "instance" + std::string(1, '\0') + name + '\0';
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(both.size()), both.data());
    const auto protocols = atom(c, "WM_PROTOCOLS");
    const auto deleteWindow = atom(c, "WM_DELETE_WINDOW");
    if (closes) {
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, protocols, XCB_ATOM_ATOM, 32, 1, &deleteWindow);
    }
    if (announcesPid) {
        const auto pid = static_cast<std::uint32_t>(getpid());
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, atom(c, "_NET_WM_PID"), XCB_ATOM_CARDINAL, 32, 1, &pid);
    }
    bool mapped = isHidden;
    if (isHidden) {
        xcb_flush(c);
        std::printf("%u\n", window);
        std::fflush(stdout);
    }
    while (xcb_connection_has_error(c) == 0) {
        if (!mapped) {
            xcb_map_window(c, window); // a window manager that is still starting may overlook it once
            xcb_flush(c);
        }
        while (auto* event = xcb_poll_for_event(c)) {
            const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> owned(event, &std::free);
            const auto type = event->response_type & 0x7f;
            if (type == XCB_MAP_NOTIFY && !mapped) {
                mapped = true;
                std::printf("%u\n", window);
                std::fflush(stdout);
            } else if (type == XCB_CLIENT_MESSAGE &&
                       reinterpret_cast<const xcb_client_message_event_t*>(event)->data.data32[0] == deleteWindow) {
                xcb_disconnect(c);
                return 0;
            }
        }
        pollfd readable{xcb_get_file_descriptor(c), POLLIN, 0};
        poll(&readable, 1, mapped ? -1 : 100);
    }
    return 1;
}
