// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/clipboard/X11SelectionOwner.hpp"

#include "platform/linux/clipboard/ClipboardTargets.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace quillane {

namespace {

constexpr std::array<std::string_view, 5> protocolNames{"TARGETS", "TIMESTAMP", "MULTIPLE", "ATOM_PAIR", "INCR"};

/// Increments are a compromise between round trips and the memory of the server.
constexpr std::size_t incrementBytes = 256 * 1'024;
constexpr std::size_t maximumTransfers = 64;
/// Targets asked for at once.
constexpr std::uint32_t maximumPairs = 64;
constexpr std::size_t maximumLists = 64;

template <typename T>
core::SharedBytes sharedBytes(const std::vector<T>& values) {
    const auto bytes = std::as_bytes(std::span(values));
    return std::vector(bytes.begin(), bytes.end());
}

} // namespace

X11SelectionOwner::X11SelectionOwner(X11Connection& connection, xcb_atom_t selection,
                                     std::chrono::milliseconds stallTimeout)
    : connection_(connection), selection_(selection), stallTimeout_(stallTimeout) {
    std::vector<std::string_view> names(protocolNames.begin(), protocolNames.end());
    names.insert(names.end(), clipboardTargets::known().begin(), clipboardTargets::known().end());
    const auto atoms = connection_.internAtoms(names);
    for (std::size_t i = 0; i < names.size(); ++i) {
        atoms_[names[i]] = atoms[i];
    }
    stallTimer_.setInterval(stallTimeout_ / 2);
    stallTimer_.callOnTimeout([this] { dropStalled(); });
    events_ = connection_.onEvent([this](const xcb_generic_event_t& event) { handle(event); });
    losses_ = connection_.onLost([this] {
        items_.clear();
        transfers_.clear();
        stallTimer_.stop();
        window_ = XCB_WINDOW_NONE;
    });
    openings_ = connection_.onOpened([this] { makeWindow(); });
    makeWindow();
}

X11SelectionOwner::~X11SelectionOwner() {
    if (!connection_.isLost()) {
        xcb_destroy_window(connection_.raw(), window_);
        connection_.flush();
    }
}

void X11SelectionOwner::makeWindow() {
    auto* c = connection_.raw();
    window_ = xcb_generate_id(c);
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY; // any client can destroy it
    xcb_create_window(c, 0, window_, connection_.root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    connection_.flush();
}

bool X11SelectionOwner::own(std::vector<core::PasteboardItem> items) {
    if (connection_.isLost()) {
        return false;
    }
    items_ = std::move(items);
    acquired_ = XCB_CURRENT_TIME;
    xcb_set_selection_owner(connection_.raw(), window_, selection_, XCB_CURRENT_TIME);
    connection_.flush();
    return true;
}

void X11SelectionOwner::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7fU) {
    case XCB_SELECTION_REQUEST: {
        const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(event);
        if (request.owner == window_ && request.selection == selection_) {
            answer(request);
        }
        return;
    }
    case XCB_PROPERTY_NOTIFY: {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.state != XCB_PROPERTY_DELETE) {
            return;
        }
        const auto transfer = std::ranges::find_if(transfers_, [&](const Transfer& each) {
            return each.requestor == change.window && each.property == change.atom;
        });
        if (transfer != transfers_.end()) {
            sendIncrement(transfer);
        }
        return;
    }
    case XCB_DESTROY_NOTIFY: {
        const auto window = reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window;
        std::erase_if(transfers_, [&](const Transfer& each) { return each.requestor == window; });
        if (window == window_) {
            makeWindow();
            replacements_.notify();
        }
        return;
    }
    default:
        return;
    }
}

void X11SelectionOwner::answer(const xcb_selection_request_event_t& request) {
    const bool isBeforeOurs = acquired_ != XCB_CURRENT_TIME && request.time != XCB_CURRENT_TIME &&
                              static_cast<std::int32_t>(request.time - acquired_) < 0;
    // Clients of an older convention name no property: the target takes its place.
    const auto property = request.property != XCB_ATOM_NONE ? request.property : request.target;
    const bool isList = request.target == atoms_["MULTIPLE"] && request.property != XCB_ATOM_NONE;
    // Nobody pastes into the window of the owner, which has to keep its mask.
    if (isBeforeOurs || request.requestor == window_ || (isList && lists_ == maximumLists)) {
        notify(request, XCB_ATOM_NONE);
    } else if (isList) {
        ++lists_;
        connection_.await<xcb_get_property_reply_t>(xcb_get_property(connection_.raw(), 0, request.requestor, property,
                                                                     XCB_GET_PROPERTY_TYPE_ANY, 0, 2 * maximumPairs),
                                                    lifetime_, [this, request](const xcb_get_property_reply_t* reply) {
                                                        --lists_;
                                                        answerMultiple(request, reply);
                                                    });
    } else {
        notify(request, deliver(request.requestor, request.target, property) ? property : xcb_atom_t{XCB_ATOM_NONE});
    }
}

void X11SelectionOwner::answerMultiple(const xcb_selection_request_event_t& request,
                                       const xcb_get_property_reply_t* reply) {
    const bool isOfPairs = reply && (reply->type == atoms_["ATOM_PAIR"] || reply->type == XCB_ATOM_ATOM);
    if (!isOfPairs || reply->format != 32 || reply->bytes_after > 0) {
        notify(request, XCB_ATOM_NONE);
        return;
    }
    std::vector<xcb_atom_t> pairs(reply->value_len / 2 * 2);
    if (!pairs.empty()) {
        std::memcpy(pairs.data(), xcb_get_property_value(reply), pairs.size() * sizeof(xcb_atom_t));
    }
    for (std::size_t i = 0; i < pairs.size(); i += 2) {
        const bool isNested = pairs[i] == atoms_["MULTIPLE"];
        if (isNested || pairs[i + 1] == XCB_ATOM_NONE || !deliver(request.requestor, pairs[i], pairs[i + 1])) {
            pairs[i + 1] = XCB_ATOM_NONE; // marks which of them failed
        }
    }
    xcb_change_property(connection_.raw(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                        atoms_["ATOM_PAIR"], 32, static_cast<std::uint32_t>(pairs.size()), pairs.data());
    notify(request, request.property);
}

std::optional<X11SelectionOwner::Value> X11SelectionOwner::valueOf(xcb_atom_t target) const {
    if (target == atoms_.at("TIMESTAMP")) {
        return Value{XCB_ATOM_INTEGER, 32, sharedBytes(std::vector{acquired_})};
    }
    if (target == atoms_.at("TARGETS")) {
        std::vector<xcb_atom_t> targets{target, atoms_.at("TIMESTAMP"), atoms_.at("MULTIPLE")};
        for (const auto name : clipboardTargets::targetsFor(items_)) {
            targets.push_back(atoms_.at(name));
        }
        return Value{XCB_ATOM_ATOM, 32, sharedBytes(targets)};
    }
    for (const auto name : clipboardTargets::known()) {
        if (atoms_.at(name) == target) {
            auto data = clipboardTargets::dataFor(name, items_);
            return data ? std::optional(Value{target, 8, std::move(*data)}) : std::nullopt;
        }
    }
    return std::nullopt;
}

bool X11SelectionOwner::deliver(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property) {
    auto value = valueOf(target);
    if (!value) {
        return false;
    }
    auto* c = connection_.raw();
    const auto size = static_cast<std::uint32_t>(value->bytes->size());
    if (size <= largestPart()) {
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, requestor, property, value->type, value->format,
                            size / (value->format / 8U), value->bytes->data());
        return true;
    }
    if (transfers_.size() >= maximumTransfers) {
        return false;
    }
    std::erase_if(transfers_, [&](const Transfer& each) {
        return each.requestor == requestor && each.property == property; // one that it has abandoned
    });
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(c, requestor, XCB_CW_EVENT_MASK, &mask);
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, requestor, property, atoms_["INCR"], 32, 1, &size);
    transfers_.push_back(
        {requestor, property, value->type, std::move(value->bytes), 0, std::chrono::steady_clock::now()});
    stallTimer_.start();
    return true;
}

void X11SelectionOwner::notify(const xcb_selection_request_event_t& request, xcb_atom_t property) {
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    answer.property = property;
    std::array<char, 32> event{}; // an event has 32 bytes whatever it holds
    std::memcpy(event.data(), &answer, sizeof answer);
    xcb_send_event(connection_.raw(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, event.data());
}

void X11SelectionOwner::sendIncrement(std::list<Transfer>::iterator transfer) {
    const auto rest = std::span(*transfer->data).subspan(transfer->sent);
    const auto part = rest.first(std::min(rest.size(), largestPart()));
    xcb_change_property(connection_.raw(), XCB_PROP_MODE_REPLACE, transfer->requestor, transfer->property,
                        transfer->type, 8, static_cast<std::uint32_t>(part.size()), part.data());
    transfer->sent += part.size();
    transfer->lastSign = std::chrono::steady_clock::now();
    if (part.empty()) { // an empty one marks the end
        end(transfer);
    }
    connection_.flush();
}

void X11SelectionOwner::end(std::list<Transfer>::iterator transfer) {
    const auto requestor = transfer->requestor;
    transfers_.erase(transfer);
    if (std::ranges::find(transfers_, requestor, &Transfer::requestor) == transfers_.end()) {
        const std::uint32_t mask = XCB_EVENT_MASK_NO_EVENT;
        xcb_change_window_attributes(connection_.raw(), requestor, XCB_CW_EVENT_MASK, &mask);
    }
}

void X11SelectionOwner::dropStalled() {
    const auto oldest = std::chrono::steady_clock::now() - stallTimeout_;
    for (auto transfer = transfers_.begin(); transfer != transfers_.end();) {
        const auto next = std::next(transfer);
        if (transfer->lastSign < oldest) {
            end(transfer);
        }
        transfer = next;
    }
    if (transfers_.empty()) {
        stallTimer_.stop();
    }
    connection_.flush();
}

std::size_t X11SelectionOwner::largestPart() const {
    constexpr std::size_t header = 64; // of the request
    const std::size_t largestRequest = std::size_t{xcb_get_setup(connection_.raw())->maximum_request_length} * 4;
    return std::min(incrementBytes, largestRequest - header);
}

} // namespace quillane
