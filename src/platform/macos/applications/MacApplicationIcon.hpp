// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

namespace quillane {

/// The program's own icon as the Dock shows it (NSApplication.applicationIconImage), for its windows.
[[nodiscard]] QIcon applicationIcon();

/// Takes back the picture that Qt puts into the Dock with the icon of its windows: the system draws the bundle's own
/// icon in every size, appearance and tint.
void leaveDockIconToSystem();

} // namespace quillane
