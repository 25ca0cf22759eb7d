// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/clipboard/X11PrimarySelection.hpp"

#include "core/clipboard/PasteboardTypes.hpp"

#include <chrono>
#include <string>

namespace quillane {

namespace {

constexpr std::chrono::seconds stallTimeout{10}; // maximum time between two signs of life of the reader

} // namespace

X11PrimarySelection::X11PrimarySelection(X11Connection& connection, const Pasteboard& pasteboard)
    : connection_(connection), pasteboard_(pasteboard), owner_(connection, XCB_ATOM_PRIMARY, stallTimeout) {
    events_ = connection_.onEvent([this](const xcb_generic_event_t& event) { handle(event); });
    losses_ = connection_.onLost([this] { offered_.reset(); });
    windows_ = owner_.onWindowReplaced([this] { offered_.reset(); });
}

bool X11PrimarySelection::offer() {
    const auto changeCount = pasteboard_.changeCount();
    if (offered_ == changeCount) {
        return true;
    }
    offered_.reset();
    const std::string type(core::pasteboardTypes::string);
    const auto text = pasteboard_.string(type);
    if (text && owner_.own({{{}, {{type, *text}}}})) {
        confirm(changeCount);
    }
    return false;
}

void X11PrimarySelection::confirm(std::int64_t changeCount) {
    connection_.await<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(connection_.raw(), XCB_ATOM_PRIMARY), lifetime_,
        [this, changeCount](const xcb_get_selection_owner_reply_t* reply) {
            if (reply != nullptr && reply->owner == owner_.window()) {
                offered_ = changeCount;
            }
        });
    connection_.flush();
}

void X11PrimarySelection::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7fU) != XCB_SELECTION_CLEAR) {
        return;
    }
    const auto& cleared = reinterpret_cast<const xcb_selection_clear_event_t&>(event);
    if (cleared.owner == owner_.window() && cleared.selection == XCB_ATOM_PRIMARY) {
        owner_.lost();
        offered_.reset();
    }
}

} // namespace quillane
