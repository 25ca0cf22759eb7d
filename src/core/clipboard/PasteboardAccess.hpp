// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane::core {

/// What the system lets this program read of other programs' copies.
enum class PasteboardAccess {
    allowed,
    asked, ///< it asks the user each time
    denied,
};

} // namespace quillane::core
