// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/KeyboardLayout.hpp"

#include <cstdint>
#include <functional>

namespace quillane {

/// Reads a layout from its key symbols (0 for none). Dead keys compose as the Compose file of the user's locale says
/// (Compose(5)), which is loaded, in about 5 ms, only if the layout has any.
[[nodiscard]] core::KeyboardLayout readXkbLayout(const std::function<std::uint32_t(const core::KeyStroke&)>& keysym);

} // namespace quillane
