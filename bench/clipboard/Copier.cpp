// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/Copier.hpp"

#include "startup/Peer.hpp"

#include <array>
#include <cstdlib>

#include <poll.h>

namespace quillane::live {

Copier::Copier(const std::string& display) {
    auto session = XSession::connect(display);
    must(session.has_value(), "the copier's connection");
    session_ = std::move(*session);
    auto* c = session_->connection();
    window_ = xcb_generate_id(c);
    xcb_create_window(c, 0, window_, session_->root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                      0, nullptr);
    for (const auto* name : {"CLIPBOARD", "TARGETS", "UTF8_STRING"}) {
        static_cast<void>(session_->atom(name));
    }
    thread_ = std::thread([this] { serve(); });
}

Copier::~Copier() {
    isEnding_ = true;
    thread_.join();
}

std::chrono::steady_clock::time_point Copier::copy(const std::string& text) {
    {
        const std::lock_guard lock(mutex_);
        text_ = text;
    }
    auto* c = session_->connection();
    const auto copied = std::chrono::steady_clock::now();
    xcb_set_selection_owner(c, window_, session_->atom("CLIPBOARD"), XCB_CURRENT_TIME);
    xcb_flush(c);
    return copied;
}

void Copier::serve() {
    auto* c = session_->connection();
    pollfd readable{.fd = xcb_get_file_descriptor(c), .events = POLLIN, .revents = 0};
    while (!isEnding_) {
        while (auto* event = xcb_poll_for_event(c)) {
            if ((event->response_type & 0x7fU) == XCB_SELECTION_REQUEST) {
                answer(*reinterpret_cast<const xcb_selection_request_event_t*>(event));
            }
            std::free(event);
        }
        ::poll(&readable, 1, 20);
    }
}

void Copier::answer(const xcb_selection_request_event_t& request) {
    auto* c = session_->connection();
    const auto text = session_->atom("UTF8_STRING");
    const auto targets = session_->atom("TARGETS");
    auto property = request.property;
    if (request.target == targets) {
        const std::array offered{targets, text};
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, request.requestor, property, XCB_ATOM_ATOM, 32,
                            static_cast<std::uint32_t>(offered.size()), offered.data());
    } else if (request.target == text) {
        const std::lock_guard lock(mutex_);
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, request.requestor, property, text, 8,
                            static_cast<std::uint32_t>(text_.size()), text_.data());
    } else {
        property = XCB_NONE;
    }
    xcb_selection_notify_event_t notice{};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.time = request.time;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    notice.property = property;
    xcb_send_event(c, 0, request.requestor, 0, reinterpret_cast<const char*>(&notice));
    xcb_flush(c);
}

} // namespace quillane::live
