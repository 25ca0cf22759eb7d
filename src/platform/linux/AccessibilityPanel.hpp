// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/permissions/ApplicationLocation.hpp"

#include <optional>
#include <string_view>

namespace quillane {

/// The settings page for assistive technologies of a desktop, by what XDG_CURRENT_DESKTOP says (names with colons
/// between them); none for desktops that have none.
[[nodiscard]] std::optional<core::ProcessCommand> accessibilityPanel(std::string_view currentDesktop);

} // namespace quillane
