// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane::core {

/// The desktop that texts are about: its keys, its menu bar or system tray, its settings. The platform sets it; only
/// texts and the keys that they name depend on it.
enum class Desktop { macOS, linuxDesktop };

} // namespace quillane::core
