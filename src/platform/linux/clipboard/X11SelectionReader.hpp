// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/linux/x11/X11Connection.hpp"

#include <QTimer>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <xcb/xcb.h>

namespace quillane {

/// Fetches one selection's contents for one target at a time, whole or in increments (ICCCM, sections 2.4 and 2.7).
/// Event driven; a request whose owner does not answer, or stops answering, ends by itself.
class X11SelectionReader {
public:
    enum class Failure {
        refused,  ///< the owner does not deliver this target
        tooLarge, ///< more than the requested maximum
        noAnswer, ///< the owner has gone or hangs, or the connection was lost
    };

    struct Contents {
        std::optional<Failure> failure;
        xcb_atom_t type = XCB_ATOM_NONE;
        int format = 0; ///< bits of one unit: 8, 16 or 32
        std::vector<std::byte> bytes;
    };

    struct Limits {
        std::chrono::milliseconds pause = std::chrono::seconds(2);  ///< maximum time between two signs of life of the
                                                                    ///< owner
        std::chrono::milliseconds total = std::chrono::seconds(20); ///< maximum time for one request
    };

    X11SelectionReader(X11Connection& connection, xcb_atom_t selection, Limits limits);
    ~X11SelectionReader();

    /// Ends the current request without an answer, and begins this one. `done` may begin another one.
    void request(xcb_atom_t target, xcb_timestamp_t time, std::size_t maximumBytes, std::function<void(Contents)> done);

    /// Ends the current request without an answer.
    void cancel();

private:
    void handle(const xcb_generic_event_t& event);
    void readPart();
    void take(const xcb_get_property_reply_t* reply);
    void finish(std::optional<Failure> failure);
    void end();
    void overwriteReadBuffer(xcb_window_t window);

    X11Connection& connection_;
    xcb_atom_t selection_;
    xcb_atom_t property_ = XCB_ATOM_NONE;
    xcb_atom_t incremental_ = XCB_ATOM_NONE;
    Limits limits_;
    xcb_window_t window_ = XCB_WINDOW_NONE; ///< a new one for each request, so that late data of an owner goes nowhere
    xcb_atom_t target_ = XCB_ATOM_NONE;
    std::size_t maximumBytes_ = 0;
    bool isIncremental_ = false;
    bool hasReceived_ = false;  ///< contents, or a part of them
    bool isReading_ = false;    ///< a part has been requested
    bool hasNewPart_ = false;   ///< another one arrived meanwhile
    std::uint32_t offset_ = 0;  ///< of the next part in the property, in units of four bytes
    std::size_t partBytes_ = 0; ///< of this increment so far
    Contents contents_;
    std::function<void(Contents)> done_;
    core::Lifetime lifetime_;
    QTimer pauseTimer_;
    QTimer totalTimer_;
    core::Subscription events_;
    core::Subscription losses_;
};

} // namespace quillane
