// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane::core {

/// The desktop that texts speak of: its keys, its menu bar or system tray, its settings. The platform gives it, and
/// nothing but texts and the keys that they name depends on it.
enum class Desktop { macOS, linuxDesktop };

} // namespace quillane::core
