// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

namespace quillane {

/// The program's own icon as the Dock shows it (NSApplication.applicationIconImage), for its windows.
[[nodiscard]] QIcon applicationIcon();

/// Undoes Qt's replacement of the Dock icon by the window icon: the system draws the bundle's own icon in every size,
/// appearance and tint.
void leaveDockIconToSystem();

} // namespace quillane
