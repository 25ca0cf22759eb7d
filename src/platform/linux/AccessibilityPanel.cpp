// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/AccessibilityPanel.hpp"

#include <algorithm>
#include <array>

namespace quillane {

namespace {

struct Panel {
    std::string_view desktop;
    const char* executable;
    const char* page; ///< the argument, or nullptr
};

constexpr std::array panels{
    Panel{"GNOME", "gnome-control-center", "universal-access"},
    Panel{"Unity", "gnome-control-center", "universal-access"},
    Panel{"Budgie", "budgie-control-center", "universal-access"},
    Panel{"KDE", "systemsettings", "kcm_access"},
    Panel{"X-Cinnamon", "cinnamon-settings", "universal-access"},
    Panel{"MATE", "mate-at-properties", nullptr},
    Panel{"XFCE", "xfce4-accessibility-settings", nullptr},
};

} // namespace

std::optional<core::ProcessCommand> accessibilityPanel(std::string_view currentDesktop) {
    while (!currentDesktop.empty()) {
        const auto name = currentDesktop.substr(0, currentDesktop.find(':'));
        const auto found = std::ranges::find(panels, name, &Panel::desktop);
        if (found != panels.end()) {
            return core::ProcessCommand{found->executable, found->page != nullptr
                                                               ? std::vector<std::string>{found->page}
                                                               : std::vector<std::string>{}};
        }
        currentDesktop.remove_prefix(std::min(name.size() + 1, currentDesktop.size()));
    }
    return std::nullopt;
}

} // namespace quillane
