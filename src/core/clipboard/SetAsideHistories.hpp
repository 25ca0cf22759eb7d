// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/VaultFolder.hpp"
#include "core/support/Date.hpp"

#include <filesystem>
#include <vector>

namespace quillane::core {

/// A history that could not be read, in a folder of its own beside the vault's.
struct SetAsideHistory {
    std::filesystem::path folder;
    Date date; ///< when it was set aside, to the second

    bool operator==(const SetAsideHistory&) const = default;
};

/// Vaults whose files could not be opened or decoded: each folder is kept under a dated name in UTC,
/// "ClipboardHistory-2026-11-22T014500Z", so that nothing unreadable is overwritten. Blocks on the disk.
namespace setAsideHistories {

inline constexpr std::size_t maximumCount = 3;

/// Moves the vault's folder, with everything in it, aside in one step. Of more than `maximumCount` the oldest are
/// erased.
[[nodiscard]] VaultFolder::Result<void> add(const std::filesystem::path& vaultFolder, Date now);

/// Those of a vault, latest first.
[[nodiscard]] VaultFolder::Result<std::vector<SetAsideHistory>> list(const std::filesystem::path& vaultFolder);

/// Erases the vault's files in one of them, and its folder unless something else is in it.
[[nodiscard]] VaultFolder::Result<void> erase(const SetAsideHistory& history);

/// Erases all those of a vault.
[[nodiscard]] VaultFolder::Result<void> eraseAll(const std::filesystem::path& vaultFolder);

} // namespace setAsideHistories

} // namespace quillane::core
