// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "desktop/agent/LiveAgent.hpp"
#include "desktop/fixture/FocusWatcher.hpp"

namespace quillane::live {

/// A row of an open menu as assistive technologies see it.
struct SeenRow {
    std::string title; ///< empty for a separator
    bool isSeparator = false;
    bool isCheckable = false;
    bool isChecked = false;
    bool isEnabled = false;
};

/// The agent's status menu, used with the mouse and the arrow keys and read as by a screen reader.
class LiveMenu {
public:
    /// Waits for the agent's item in the tray, clicks on it and goes to the first row of the menu that opens.
    [[nodiscard]] static tl::expected<LiveMenu, std::string> open(const LiveDesktop& desktop);

    /// The rows, from the top.
    [[nodiscard]] std::vector<SeenRow> rows() const;

    /// Goes to the row with this title and chooses it, which closes the menu; false when the row does not exist.
    [[nodiscard]] bool choose(const std::string& title);

    /// Closes it with Escape; true when it has gone.
    [[nodiscard]] bool close();

private:
    LiveMenu(const LiveDesktop& desktop, std::unique_ptr<FocusWatcher> focus, AccessibleNode row)
        : desktop_(&desktop), focus_(std::move(focus)), row_(std::move(row)) {}

    const LiveDesktop* desktop_;
    std::unique_ptr<FocusWatcher> focus_;
    AccessibleNode row_; ///< the current one
};

} // namespace quillane::live
