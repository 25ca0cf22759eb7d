// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/clipboard/X11SelectionReader.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace quillane {

namespace {

/// The part of a property that is requested at once, in units of four bytes: the size of most owners' increments.
constexpr std::uint32_t partUnits = 256 * 1'024;

/// XCB reads into a buffer of this size, where contents would stay until enough other answers have arrived.
constexpr std::array<char, 4'096> readBuffer{};

} // namespace

X11SelectionReader::X11SelectionReader(X11Connection& connection, xcb_atom_t selection, Limits limits)
    : connection_(connection), selection_(selection), limits_(limits) {
    constexpr std::array<std::string_view, 2> names{"QUILLANE_SELECTION", "INCR"};
    const auto atoms = connection_.internAtoms(names);
    property_ = atoms[0];
    incremental_ = atoms[1];
    for (auto* timer : {&pauseTimer_, &totalTimer_}) {
        timer->setSingleShot(true);
        timer->callOnTimeout([this] { finish(Failure::noAnswer); });
    }
    events_ = connection_.onEvent([this](const xcb_generic_event_t& event) { handle(event); });
    losses_ = connection_.onLost([this] {
        window_ = XCB_WINDOW_NONE; // gone with the connection
        if (done_) {
            finish(Failure::noAnswer);
        }
    });
}

X11SelectionReader::~X11SelectionReader() {
    cancel();
}

void X11SelectionReader::request(xcb_atom_t target, xcb_timestamp_t time, std::size_t maximumBytes,
                                 std::function<void(Contents)> done) {
    end();
    target_ = target;
    maximumBytes_ = maximumBytes;
    done_ = std::move(done);
    lifetime_.restart();
    isIncremental_ = isReading_ = hasNewPart_ = false;
    offset_ = 0;
    partBytes_ = 0;
    contents_ = {};
    auto* c = connection_.raw();
    window_ = xcb_generate_id(c);
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(c, 0, window_, connection_.root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    xcb_convert_selection(c, window_, selection_, target, property_, time);
    connection_.flush();
    pauseTimer_.start(limits_.pause);
    totalTimer_.start(limits_.total);
}

void X11SelectionReader::cancel() {
    end();
    connection_.flush();
}

/// Does not flush yet: the next request can go with it.
void X11SelectionReader::end() {
    done_ = nullptr;
    lifetime_.end();
    pauseTimer_.stop();
    totalTimer_.stop();
    if (const auto window = std::exchange(window_, XCB_WINDOW_NONE); window != XCB_WINDOW_NONE) {
        if (std::exchange(hasReceived_, false)) {
            overwriteReadBuffer(window);
        }
        xcb_destroy_window(connection_.raw(), window);
    }
}

void X11SelectionReader::overwriteReadBuffer(xcb_window_t window) {
    auto* c = connection_.raw();
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, window, property_, XCB_ATOM_STRING, 8, readBuffer.size(),
                        readBuffer.data());
    connection_.await<xcb_get_property_reply_t>(
        xcb_get_property(c, 0, window, property_, XCB_ATOM_STRING, 0, readBuffer.size() / 4), {},
        [](const xcb_get_property_reply_t* /*reply*/) {});
}

void X11SelectionReader::handle(const xcb_generic_event_t& event) {
    if (!done_) {
        return;
    }
    switch (event.response_type & 0x7fU) {
    case XCB_SELECTION_NOTIFY: {
        const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
        if (answer.requestor != window_ || answer.selection != selection_ || answer.target != target_) {
            return;
        }
        if (answer.property == XCB_ATOM_NONE) {
            finish(Failure::refused);
        } else if (answer.property == property_ && !isReading_ && !isIncremental_) {
            readPart();
        }
        return;
    }
    case XCB_PROPERTY_NOTIFY: {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.window != window_ || change.atom != property_ || change.state != XCB_PROPERTY_NEW_VALUE ||
            !isIncremental_) {
            return;
        }
        isReading_ ? void(hasNewPart_ = true) : readPart();
        return;
    }
    default:
        return;
    }
}

void X11SelectionReader::readPart() {
    isReading_ = true;
    pauseTimer_.start(limits_.pause);
    auto* c = connection_.raw();
    // Deletes the property after its last part, which makes the owner send the next increment.
    connection_.await<xcb_get_property_reply_t>(
        xcb_get_property(c, 1, window_, property_, XCB_GET_PROPERTY_TYPE_ANY, offset_, partUnits), lifetime_,
        [this](const xcb_get_property_reply_t* reply) { take(reply); });
    connection_.flush();
}

void X11SelectionReader::take(const xcb_get_property_reply_t* reply) {
    isReading_ = false;
    if (!reply) {
        finish(Failure::noAnswer);
        return;
    }
    if (reply->type == incremental_ && !isIncremental_) {
        std::uint32_t announced = 0;
        if (reply->format == 32 && reply->value_len > 0) {
            announced = *static_cast<const std::uint32_t*>(xcb_get_property_value(reply));
        }
        if (announced > maximumBytes_) { // it is a lower bound
            finish(Failure::tooLarge);
            return;
        }
        isIncremental_ = true;
        contents_.bytes.reserve(announced > 0 ? announced : maximumBytes_); // no cost until it is filled
        if (std::exchange(hasNewPart_, false)) {
            readPart();
        }
        return;
    }
    if (reply->type == XCB_ATOM_NONE) {
        if (!isIncremental_) {
            finish(Failure::refused); // the owner announces the property, but it does not exist
        }
        return; // the event of a part that has been read already
    }
    const auto size = static_cast<std::size_t>(xcb_get_property_value_length(reply));
    if (size > 0 && !contents_.bytes.empty() && (contents_.type != reply->type || contents_.format != reply->format)) {
        finish(Failure::refused); // increments of one kind, then of another
        return;
    }
    if (contents_.bytes.size() + size + reply->bytes_after > maximumBytes_) {
        finish(Failure::tooLarge);
        return;
    }
    const auto* value = static_cast<const std::byte*>(xcb_get_property_value(reply));
    hasReceived_ = true;
    if (contents_.bytes.empty()) { // the empty increment at the end may be of any kind
        contents_.type = reply->type;
        contents_.format = reply->format;
    }
    contents_.bytes.insert(contents_.bytes.end(), value, value + size);
    partBytes_ += size;
    if (reply->bytes_after > 0) {
        offset_ += partUnits;
        readPart();
        return;
    }
    offset_ = 0;
    const bool isLast = std::exchange(partBytes_, 0) == 0 || !isIncremental_;
    if (isLast) {
        if (contents_.bytes.size() < contents_.bytes.capacity() / 2) {
            contents_.bytes.shrink_to_fit();
        }
        finish(std::nullopt);
    } else if (std::exchange(hasNewPart_, false)) {
        readPart();
    }
}

void X11SelectionReader::finish(std::optional<Failure> failure) {
    const auto done = std::exchange(done_, nullptr);
    auto contents = failure ? Contents{} : std::move(contents_);
    contents.failure = failure;
    end();
    auto& connection = connection_; // `done` may destroy this
    if (done) {
        done(std::move(contents));
    }
    connection.flush();
}

} // namespace quillane
