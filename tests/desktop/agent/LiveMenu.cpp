// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "desktop/agent/LiveMenu.hpp"

#include "desktop/fixture/XClients.hpp"

namespace quillane::live {

tl::expected<LiveMenu, std::string> LiveMenu::open(const LiveDesktop& desktop) {
    std::optional<ScreenArea> area;
    const auto located = [&] {
        const auto icon = trayIcon(desktop.screen(), "quillane");
        area = icon ? areaOf(desktop.screen(), *icon) : std::nullopt;
        return area && area->width > 1;
    };
    if (!waitUntil(located)) {
        return tl::unexpected(std::string("the agent has no item in the tray"));
    }
    auto focus = std::make_unique<FocusWatcher>(desktop.accessibility());
    desktop.keyboard().movePointer(area->centerX(), area->centerY());
    desktop.keyboard().click(1);
    if (!waitUntil([&] { return !popUps(desktop.screen()).empty(); })) {
        return tl::unexpected(std::string("a click on the agent's item opens no menu"));
    }
    // The menu takes the keys a moment after it is shown.
    std::optional<AccessibleNode> row;
    const auto onRow = [&] {
        desktop.keyboard().tap(Key::down);
        row = focus->next(std::chrono::milliseconds{300});
        return row && row->role.ends_with("menu item");
    };
    if (!waitUntil(onRow)) {
        return tl::unexpected(std::string("the menu tells of no row"));
    }
    return LiveMenu(desktop, std::move(focus), std::move(*row));
}

std::vector<SeenRow> LiveMenu::rows() const {
    using State = AccessibleNode::State;
    std::vector<SeenRow> rows;
    const auto menu = desktop_->accessibility().parent(row_);
    if (!menu) {
        return rows;
    }
    for (const auto& node : desktop_->accessibility().children(*menu)) {
        SeenRow row;
        row.title = node.name;
        row.isSeparator = node.role == "separator";
        row.isCheckable = node.role == "check menu item";
        row.isChecked = node.is(State::checked);
        row.isEnabled = node.is(State::enabled);
        rows.push_back(row);
    }
    return rows;
}

bool LiveMenu::choose(const std::string& title) {
    constexpr int moreThanAnyMenu = 40;
    for (int i = 0; row_.name != title && i < moreThanAnyMenu; ++i) {
        desktop_->keyboard().tap(Key::down);
        const auto next = focus_->next(defaultTimeout);
        if (!next) {
            return false;
        }
        row_ = *next;
    }
    if (row_.name != title) {
        return false;
    }
    desktop_->keyboard().tap(Key::enter);
    return waitUntil([&] { return popUps(desktop_->screen()).empty(); });
}

bool LiveMenu::close() {
    desktop_->keyboard().tap(Key::escape);
    return waitUntil([&] { return popUps(desktop_->screen()).empty(); });
}

} // namespace quillane::live
