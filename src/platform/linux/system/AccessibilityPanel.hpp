// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/permissions/ApplicationLocation.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace quillane {

/// The settings page for assistive technologies of a desktop, by the value of XDG_CURRENT_DESKTOP (names separated by
/// colons); none for desktops without one.
[[nodiscard]] std::optional<core::ProcessCommand> accessibilityPanel(std::string_view currentDesktop);

/// Its page for keyboards and their layouts, likewise.
[[nodiscard]] std::optional<core::ProcessCommand> keyboardPanel(std::string_view currentDesktop);

/// The running desktop, from XDG_CURRENT_DESKTOP.
[[nodiscard]] std::string currentDesktop();

/// Whether there is a page, and the program that shows it is installed.
[[nodiscard]] bool isInstalled(const std::optional<core::ProcessCommand>& panel);

} // namespace quillane
