// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

namespace quillane {

/// The program's own icon as the Dock shows it (NSApplication.applicationIconImage), for its windows.
[[nodiscard]] QIcon applicationIcon();

} // namespace quillane
