// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/linux/keyboard/X11InputSources.hpp"
#include "platform/linux/keyboard/X11Session.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>

namespace quillane::testing {

/// An X server with three layouts, a user at its keyboard and this program's connection to it.
class X11Driver {
public:
    bool waitUntil(const std::function<bool()>& condition) { return testing::waitUntil(condition); }

protected:
    X11Driver() {
        EXPECT_EQ(testing::run({"setxkbmap", "us,il,ara"}), 0);
        session_ = *X11Session::open();
        sources_ = std::make_unique<X11InputSources>(*session_.connection, *session_.keyboard);
    }

    /// Processes everything that has happened on the server so far.
    void settle() {
        bool answered = false;
        session_.connection->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(session_.connection->raw()),
                                                                lifetime_, [&](const auto*) { answered = true; });
        session_.connection->flush();
        EXPECT_TRUE(testing::waitUntil([&] { return answered; }));
    }

    int argc_ = 1;
    char name_[5] = "test";
    std::array<char*, 2> argv_{name_, nullptr};
    QCoreApplication application_{argc_, argv_.data()};
    testing::X11TestServer server_;
    testing::X11TestKeyboard user_;
    X11Session session_;
    std::unique_ptr<X11InputSources> sources_;
    core::Lifetime lifetime_;
};

} // namespace quillane::testing
