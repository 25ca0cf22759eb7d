// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/PasteboardContents.hpp"
#include "core/support/Lifetime.hpp"
#include "platform/linux/x11/X11Connection.hpp"

#include <QTimer>

#include <chrono>
#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <xcb/xcb.h>

namespace quillane {

/// Owns a selection and serves requests for it (ICCCM, section 2.2), in increments where the contents are larger than a
/// request. The connection must be the caller's own: this selects events on other clients' windows, of which a
/// connection has one mask each.
class X11SelectionOwner {
public:
    X11SelectionOwner(X11Connection& connection, xcb_atom_t selection, std::chrono::milliseconds stallTimeout);
    ~X11SelectionOwner();

    /// Takes the selection and offers the items until another client takes it. False while there is no connection.
    bool own(std::vector<core::PasteboardItem> items);

    /// Offers these as well, without taking the selection again.
    void replaceItems(std::vector<core::PasteboardItem> items) { items_ = std::move(items); }

    [[nodiscard]] const std::vector<core::PasteboardItem>& items() const { return items_; }

    [[nodiscard]] xcb_window_t window() const { return window_; }

    /// The server has given the selection to this owner at that time, or to another client.
    void acquired(xcb_timestamp_t time) { acquired_ = time; }

    void lost() { items_.clear(); }

    /// Another client has destroyed the window, and with it this owner's selection. There is a new window.
    core::Subscription onWindowReplaced(std::function<void()> handler) {
        return replacements_.subscribe(std::move(handler));
    }

private:
    /// Contents in transfer to a window, an increment at a time.
    struct Transfer {
        xcb_window_t requestor;
        xcb_atom_t property;
        xcb_atom_t type;
        core::SharedBytes data;
        std::size_t sent = 0;
        std::chrono::steady_clock::time_point lastSign;
    };

    struct Value {
        xcb_atom_t type;
        std::uint8_t format;
        core::SharedBytes bytes;
    };

    void makeWindow();
    void handle(const xcb_generic_event_t& event);
    void answer(const xcb_selection_request_event_t& request);
    void answerMultiple(const xcb_selection_request_event_t& request, const xcb_get_property_reply_t* reply);
    [[nodiscard]] std::optional<Value> valueOf(xcb_atom_t target) const;
    bool deliver(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    void notify(const xcb_selection_request_event_t& request, xcb_atom_t property);
    void sendIncrement(std::list<Transfer>::iterator transfer);
    void end(std::list<Transfer>::iterator transfer);
    void dropStalled();
    [[nodiscard]] std::size_t largestPart() const;

    X11Connection& connection_;
    xcb_atom_t selection_;
    std::chrono::milliseconds stallTimeout_;
    std::unordered_map<std::string_view, xcb_atom_t> atoms_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    xcb_timestamp_t acquired_ = XCB_CURRENT_TIME;
    std::vector<core::PasteboardItem> items_;
    std::list<Transfer> transfers_;
    std::size_t lists_ = 0; ///< lists of several targets that are being read
    core::Listeners<> replacements_;
    QTimer stallTimer_;
    core::Lifetime lifetime_;
    core::Subscription events_;
    core::Subscription losses_;
    core::Subscription openings_;
};

} // namespace quillane
