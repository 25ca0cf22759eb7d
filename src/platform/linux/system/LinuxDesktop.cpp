// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/system/LinuxDesktop.hpp"

#include "core/localization/Texts.hpp"

#include <cstdlib>
#include <string_view>

namespace quillane {

namespace {

std::string_view environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

LinuxDesktop LinuxDesktop::fromEnvironment() {
    return {.x11Display = std::string(environment("DISPLAY")),
            .waylandSession = environment("XDG_SESSION_TYPE") == "wayland" || !environment("WAYLAND_DISPLAY").empty()};
}

std::optional<std::string> keyboardUnavailableReason(const LinuxDesktop& desktop) {
    if (!desktop.waylandSession) {
        return std::nullopt;
    }
    return core::texts::keyboardNeedsX11.rendered(core::AppLanguage::english);
}

} // namespace quillane
