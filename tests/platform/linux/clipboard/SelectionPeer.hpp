// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/X11Connection.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <xcb/xcb.h>

namespace quillane::testing {

/// Another program that owns the clipboard, well-behaved or not, over a connection of its own.
class SelectionPeer {
public:
    enum class Manner {
        whole,    ///< answers with the whole contents at once
        parts,    ///< in increments
        silent,   ///< never answers
        endless,  ///< increments that never end
        stalling, ///< stops after the first increment
        lying,    ///< claims to have answered and has not
        late,     ///< answers when `answerNow` is called
    };

    explicit SelectionPeer(const std::string& display) : connection_(std::move(*X11Connection::open(display))) {
        window_ = xcb_generate_id(connection_->raw());
        xcb_create_window(connection_->raw(), 0, window_, connection_->root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        static_cast<void>(atom("TARGETS"));
        events_ = connection_->onEvent([this](const xcb_generic_event_t& event) { handle(event); });
    }

    /// Takes the clipboard with these targets and their contents.
    void own(std::map<std::string, std::string> contents, Manner manner = Manner::whole) {
        contents_.clear();
        for (auto& [name, bytes] : contents) {
            contents_[atom(name)] = std::move(bytes);
        }
        manner_ = manner;
        xcb_set_selection_owner(connection_->raw(), window_, atom("CLIPBOARD"), XCB_CURRENT_TIME);
        connection_->flush();
    }

    /// Waits until the server has executed all requests.
    void synchronize() {
        const XReply<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(connection_->raw(), xcb_get_input_focus(connection_->raw()), nullptr));
    }

    /// Refuses this many requests before it answers, as a program that takes the clipboard too early does.
    void refuseAtFirst(int requests) { refusals_ = requests; }

    /// Answers the requests that arrived meanwhile, and from now on at once.
    void answerNow() {
        manner_ = Manner::whole;
        for (const auto& request : std::exchange(unanswered_, {})) {
            answer(request);
        }
    }

    /// Delivers contents as data in units of this many bits.
    void answerInFormat(std::uint8_t format) { format_ = format; }

    /// Delivers the list of targets as data of this type.
    void answerTargetsAs(std::string_view type) { typeOfTargets_ = atom(type); }

    void announceSize(std::uint32_t size) { announcedSize_ = size; }

    [[nodiscard]] X11Connection& connection() { return *connection_; }

    [[nodiscard]] xcb_atom_t atom(std::string_view name) {
        if (!atoms_.contains(std::string(name))) {
            atoms_[std::string(name)] = connection_->internAtoms(std::array{name}).front();
        }
        return atoms_[std::string(name)];
    }

    /// The requested targets.
    [[nodiscard]] const std::vector<std::string>& asked() const { return asked_; }

    [[nodiscard]] bool isOwner() const { return isOwner_; }

private:
    void handle(const xcb_generic_event_t& event) {
        switch (event.response_type & 0x7fU) {
        case XCB_SELECTION_CLEAR:
            isOwner_ = false;
            return;
        case XCB_SELECTION_REQUEST:
            note(reinterpret_cast<const xcb_selection_request_event_t&>(event));
            answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
            return;
        case XCB_PROPERTY_NOTIFY:
            continueWith(reinterpret_cast<const xcb_property_notify_event_t&>(event));
            return;
        default:
            return;
        }
    }

    void note(const xcb_selection_request_event_t& request) {
        for (const auto& [name, value] : atoms_) {
            if (value == request.target) {
                asked_.push_back(name);
            }
        }
    }

    void answer(const xcb_selection_request_event_t& request) {
        if (manner_ == Manner::late) {
            unanswered_.push_back(request);
        }
        if (manner_ == Manner::silent || manner_ == Manner::late) {
            return;
        }
        auto* c = connection_->raw();
        xcb_atom_t property = request.property;
        if (refusals_ > 0) {
            --refusals_;
            property = XCB_ATOM_NONE;
        } else if (request.target == atom("TARGETS")) {
            std::vector<xcb_atom_t> targets{atom("TARGETS")};
            for (const auto& [target, bytes] : contents_) {
                targets.push_back(target);
            }
            xcb_change_property(c, XCB_PROP_MODE_REPLACE, request.requestor, property, typeOfTargets_, 32,
                                static_cast<std::uint32_t>(targets.size()), targets.data());
        } else if (!contents_.contains(request.target)) {
            property = XCB_ATOM_NONE;
        } else if (manner_ == Manner::whole) {
            const auto& bytes = contents_[request.target];
            xcb_change_property(c, XCB_PROP_MODE_REPLACE, request.requestor, property, request.target, format_,
                                static_cast<std::uint32_t>(bytes.size() / (format_ / 8U)), bytes.data());
        } else if (manner_ != Manner::lying) {
            const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
            xcb_change_window_attributes(c, request.requestor, XCB_CW_EVENT_MASK, &mask);
            xcb_change_property(c, XCB_PROP_MODE_REPLACE, request.requestor, property, atom("INCR"), 32, 1,
                                &announcedSize_);
            transfer_ = {request.requestor, property, request.target};
            sent_ = 0;
        }
        xcb_selection_notify_event_t notice{};
        notice.response_type = XCB_SELECTION_NOTIFY;
        notice.time = request.time;
        notice.requestor = request.requestor;
        notice.selection = request.selection;
        notice.target = request.target;
        notice.property = property;
        std::array<char, 32> bytes{};
        std::memcpy(bytes.data(), &notice, sizeof notice);
        xcb_send_event(c, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, bytes.data());
        connection_->flush();
    }

    void continueWith(const xcb_property_notify_event_t& change) {
        if (change.state != XCB_PROPERTY_DELETE || change.window != transfer_[0] || change.atom != transfer_[1] ||
            (manner_ == Manner::stalling && sent_ > 0)) {
            return;
        }
        constexpr std::size_t partSize = 50'000;
        static const std::string filler(partSize, 'x');
        const auto& bytes = contents_[transfer_[2]];
        const auto part = manner_ == Manner::endless
                              ? std::string_view(filler)
                              : std::string_view(bytes).substr(std::min(sent_, bytes.size()), partSize);
        sent_ += part.size();
        xcb_change_property(connection_->raw(), XCB_PROP_MODE_REPLACE, transfer_[0], transfer_[1], transfer_[2], 8,
                            static_cast<std::uint32_t>(part.size()), part.data());
        connection_->flush();
    }

    std::unique_ptr<X11Connection> connection_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    std::map<std::string, xcb_atom_t> atoms_;
    std::map<xcb_atom_t, std::string> contents_;
    Manner manner_ = Manner::whole;
    std::uint32_t announcedSize_ = 0;
    std::array<xcb_atom_t, 3> transfer_{}; ///< window, property, target
    std::size_t sent_ = 0;
    std::vector<std::string> asked_;
    std::vector<xcb_selection_request_event_t> unanswered_;
    int refusals_ = 0;
    bool isOwner_ = true;
    std::uint8_t format_ = 8;
    xcb_atom_t typeOfTargets_ = XCB_ATOM_ATOM;
    core::Subscription events_;
};

} // namespace quillane::testing
