// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace quillane {

/// A tool tip that shows this text as it is. Qt treats a tool tip as rich text when it finds a tag or "&lt;" in it, as
/// file names may have, and as plain text otherwise.
[[nodiscard]] QString plainToolTip(const QString& text);

} // namespace quillane
