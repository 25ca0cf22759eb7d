// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

namespace quillane::core {

/// Whether the desktop starts this program when the user signs in.
enum class LoginItemStatus {
    notRegistered,
    enabled,
    requiresApproval, ///< registered, but the user has to allow it in the system's settings
    notFound,         ///< the system does not know the program
    unknown,          ///< an answer that this program does not know
};

} // namespace quillane::core
