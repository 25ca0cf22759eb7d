// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Uuid.hpp"

#include <string>
#include <string_view>

namespace quillane::core::vaultNames {

// The names of the files in a vault's folder. Whatever ends in ".clip" is the vault's.

inline constexpr std::string_view extension = ".clip";
inline constexpr std::string_view pendingPrefix = "pending-";
inline constexpr std::string_view temporaryPrefix = "temporary-"; ///< of files that are being written
inline constexpr const char* index = "index";
inline constexpr const char* pendingIndex = "pending-index.clip";
inline constexpr const char* lock = "lock";

[[nodiscard]] inline std::string fileOf(const Uuid& id) {
    return id.toString() + std::string(extension);
}

[[nodiscard]] inline std::string pendingOf(const Uuid& id) {
    return std::string(pendingPrefix) + fileOf(id);
}

/// A new one each time, which nobody else can guess or take.
[[nodiscard]] inline std::string temporary() {
    return std::string(temporaryPrefix) + fileOf(Uuid::random());
}

[[nodiscard]] inline bool isClip(std::string_view name) {
    return name.size() > extension.size() && name.ends_with(extension);
}

/// Left by a save that has not ended, or did not count: an entry under another name.
[[nodiscard]] inline bool isUnfinished(std::string_view name) {
    return isClip(name) && (name.starts_with(pendingPrefix) || name.starts_with(temporaryPrefix));
}

} // namespace quillane::core::vaultNames
