// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/x11/X11Connection.hpp"
#include "platform/linux/x11/X11TestServer.hpp"
#include "support/TestProcess.hpp"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace quillane::testing {

/// An application with one window, which is on the screen when the object has been made.
class WindowProcess : public TestProcess {
public:
    explicit WindowProcess(std::string windowClass, std::vector<std::string> options = {})
        : TestProcess(arguments(std::move(windowClass), std::move(options))),
          window_(static_cast<xcb_window_t>(std::stoul(readLine()))) {}

    [[nodiscard]] xcb_window_t window() const { return window_; }

private:
    static std::vector<std::string> arguments(std::string windowClass, std::vector<std::string> options) {
        options.insert(options.begin(), {QUILLANE_WINDOW_STANDIN, std::move(windowClass)});
        return options;
    }

    xcb_window_t window_;
};

/// A window manager that accepts requests to show windows.
inline std::unique_ptr<TestProcess> startWindowManager(X11Connection& connection) {
    auto manager =
        std::make_unique<TestProcess>(std::vector<std::string>{"openbox", "--config-file", "/etc/xdg/openbox/rc.xml"});
    // It announces itself before it accepts requests to show windows.
    const std::array<std::string_view, 1> names{"_NET_CLIENT_LIST"};
    const auto clients = connection.internAtoms(names).front();
    EXPECT_TRUE(waitUntil([&] {
        auto* c = connection.raw();
        const XReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
            c, xcb_get_property(c, 0, connection.root(), clients, XCB_ATOM_WINDOW, 0, 1), nullptr));
        return reply && reply->type == XCB_ATOM_WINDOW;
    }));
    return manager;
}

} // namespace quillane::testing
