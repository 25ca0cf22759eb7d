// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/system/AccessibilityPanel.hpp"

#include <QStandardPaths>
#include <QString>

#include <algorithm>
#include <array>

namespace quillane {

namespace {

struct Page {
    const char* executable;
    const char* argument; ///< or nullptr
};

struct Panels {
    std::string_view desktop;
    Page accessibility;
    Page keyboard;
};

constexpr std::array panels{
    Panels{"GNOME", {"gnome-control-center", "universal-access"}, {"gnome-control-center", "keyboard"}},
    Panels{"Unity", {"gnome-control-center", "universal-access"}, {"gnome-control-center", "keyboard"}},
    Panels{"Budgie", {"budgie-control-center", "universal-access"}, {"budgie-control-center", "keyboard"}},
    Panels{"KDE", {"systemsettings", "kcm_access"}, {"systemsettings", "kcm_keyboard"}},
    Panels{"X-Cinnamon", {"cinnamon-settings", "universal-access"}, {"cinnamon-settings", "keyboard"}},
    Panels{"MATE", {"mate-at-properties", nullptr}, {"mate-keyboard-properties", nullptr}},
    Panels{"XFCE", {"xfce4-accessibility-settings", nullptr}, {"xfce4-keyboard-settings", nullptr}},
};

std::optional<core::ProcessCommand> panel(std::string_view currentDesktop, Page Panels::*page) {
    while (!currentDesktop.empty()) {
        const auto name = currentDesktop.substr(0, currentDesktop.find(':'));
        const auto found = std::ranges::find(panels, name, &Panels::desktop);
        if (found != panels.end()) {
            const auto& [executable, argument] = (*found).*page;
            return core::ProcessCommand{executable, argument != nullptr ? std::vector<std::string>{argument}
                                                                        : std::vector<std::string>{}};
        }
        currentDesktop.remove_prefix(std::min(name.size() + 1, currentDesktop.size()));
    }
    return std::nullopt;
}

} // namespace

std::optional<core::ProcessCommand> accessibilityPanel(std::string_view currentDesktop) {
    return panel(currentDesktop, &Panels::accessibility);
}

std::optional<core::ProcessCommand> keyboardPanel(std::string_view currentDesktop) {
    return panel(currentDesktop, &Panels::keyboard);
}

std::string currentDesktop() {
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP").toStdString();
}

bool isInstalled(const std::optional<core::ProcessCommand>& panel) {
    return panel && !QStandardPaths::findExecutable(QString::fromStdString(panel->executable)).isEmpty();
}

} // namespace quillane
