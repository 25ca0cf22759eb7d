// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/Pasteboard.hpp"
#include "platform/linux/clipboard/X11SelectionOwner.hpp"
#include "platform/linux/x11/X11Connection.hpp"

#include <memory>
#include <optional>

namespace quillane {

/// Offers the pasteboard's text as the selected text too (the PRIMARY selection), for programs that paste only that.
/// The connection must be the pasteboard's (see X11SelectionOwner).
class X11PrimarySelection {
public:
    X11PrimarySelection(X11Connection& connection, const Pasteboard& pasteboard);

    /// Whether pasting the selected text now yields the pasteboard's. If not, and the pasteboard has a text, takes the
    /// selection, which the server confirms later: ask again then. It is kept until another program selects something.
    [[nodiscard]] bool offer();

private:
    void handle(const xcb_generic_event_t& event);
    void confirm(std::int64_t changeCount);

    X11Connection& connection_;
    const Pasteboard& pasteboard_;
    X11SelectionOwner owner_;
    std::optional<std::int64_t> offered_; ///< the pasteboard's change count at the offer
    core::Lifetime lifetime_;
    core::Subscription events_;
    core::Subscription losses_;
    core::Subscription windows_;
};

} // namespace quillane
