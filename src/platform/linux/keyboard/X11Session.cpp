// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11Session.hpp"

#include <chrono>

namespace quillane {

tl::expected<X11Session, std::string> X11Session::open(const std::string& display) {
    auto connection = X11Connection::open(display);
    if (!connection) {
        return tl::unexpected(connection.error());
    }
    if ((*connection)->extensions().xkbFirstEvent == 0) {
        return tl::unexpected(std::string("the X server has no XKEYBOARD extension"));
    }
    X11Session session;
    session.connection = std::move(*connection);
    session.input = std::make_unique<X11RawInput>(*session.connection);
    session.keyboard = std::make_unique<X11Keyboard>(*session.connection, *session.input);
    session.connection->settle(std::chrono::seconds(5));
    return session;
}

} // namespace quillane
