// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/permissions/ApplicationLocation.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace quillane {

/// The settings page for assistive technologies of a desktop, by what XDG_CURRENT_DESKTOP says (names with colons
/// between them); none for desktops that have none.
[[nodiscard]] std::optional<core::ProcessCommand> accessibilityPanel(std::string_view currentDesktop);

/// Its page for keyboards and their layouts, likewise.
[[nodiscard]] std::optional<core::ProcessCommand> keyboardPanel(std::string_view currentDesktop);

/// The desktop that runs, as XDG_CURRENT_DESKTOP says.
[[nodiscard]] std::string currentDesktop();

/// Whether there is a page and the program that shows it is found.
[[nodiscard]] bool isInstalled(const std::optional<core::ProcessCommand>& panel);

} // namespace quillane
