// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/ClipboardEntry.hpp"
#include "core/clipboard/VaultFolder.hpp"
#include "core/support/SecretBytes.hpp"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace quillane::core {

/// The clipboard history on disk: one file an entry, "<UUID>.clip", and "index" with their order, each a sealed box of
/// a binary property list. Everything blocks on the disk; one thread at a time, never the main one.
///
/// A process that is killed at any instant leaves the history as it was before or after the save. A save that
/// overwrites an entry together with something else first writes what it overwrites under names that begin with
/// "pending-"; once "pending-index.clip" is there, the save counts as done, and the files only have to be given their
/// names.
class ClipboardVault {
public:
    template <typename T>
    using Result = VaultFolder::Result<T>;

    /// Makes the folder if it is missing. Fails when the key is not exactly 32 bytes.
    [[nodiscard]] static Result<ClipboardVault> open(const std::filesystem::path& directory, SecretBytes key);

    /// All entries in the history's order, or an error and no entry at all. Without an index there are none. The next
    /// save takes what was loaded as saved.
    [[nodiscard]] Result<std::vector<ClipboardEntry>> load();

    /// Makes the disk say this: writes the entries whose copy date differs from the one on disk, and the index when it
    /// differs, and removes the files of entries that are gone. Where nothing differs nothing is written. After an
    /// error the earlier history may still be loaded, without what is gone where only that would have made room, and
    /// nothing of the save is left on the disk. One entry that is new costs four flushes, however long the history is.
    [[nodiscard]] Result<void> save(std::span<const ClipboardEntry> entries);

    /// Removes the vault's files.
    [[nodiscard]] Result<void> erase();

    /// Removes the files of any vault from a folder, which need not exist.
    [[nodiscard]] static Result<void> eraseFiles(const std::filesystem::path& folder);

    /// Whether a folder, which need not exist, contains files of a vault.
    [[nodiscard]] static Result<bool> hasFiles(const std::filesystem::path& folder);

    /// What could be read of a history.
    struct Recovered {
        std::vector<ClipboardEntry> entries; ///< in its order
        std::size_t total = 0;               ///< number of entries that it had, as far as its files show
    };

    /// Reads what can be read of another history that was sealed under the same key.
    [[nodiscard]] Result<Recovered> recover(const std::filesystem::path& directory) const;

    /// Moves everything in the folder aside (`SetAsideHistories`) and begins with an empty one.
    [[nodiscard]] Result<void> setAside(Date now);

    /// Whether the folder is still the one that the path names.
    [[nodiscard]] bool isInPlace() const { return folder_.isAt(directory_); }

    /// The open folder can no longer be used, whether or not the path names another one (`VaultFolder::isStale`).
    [[nodiscard]] bool isStale() const { return folder_.isStale(); }

    /// Opens the folder that the path names now, and makes it if it is missing. The next save writes everything again.
    [[nodiscard]] Result<void> reopen();

    /// The next save writes everything again.
    void invalidateCache() {
        persisted_.clear();
        indexed_.reset();
    }

    /// The next save writes this entry again.
    void invalidateCache(const Uuid& id) { persisted_.erase(id); }

private:
    ClipboardVault(std::filesystem::path directory, VaultFolder folder, SecretBytes key)
        : directory_(std::move(directory)), folder_(std::move(folder)), key_(std::move(key)) {}

    struct Changes;

    /// How entries that have a file get new contents.
    enum class Overwriting {
        together, ///< all at once with the index
        singly,   ///< one after the other, which takes less room
        never,
    };

    [[nodiscard]] Result<void> write(std::span<const ClipboardEntry> entries, Overwriting overwriting);
    [[nodiscard]] Result<void> writeInLittleRoom(std::span<const ClipboardEntry> entries);
    [[nodiscard]] Result<Changes> changesTo(std::span<const ClipboardEntry> entries, Overwriting overwriting);
    [[nodiscard]] Result<void> apply(const Changes& changes);
    [[nodiscard]] Result<void> writeEntry(const ClipboardEntry& entry, const std::string& name);
    [[nodiscard]] Result<void> writeSealed(const std::string& name, std::optional<std::vector<std::byte>> plaintext);
    [[nodiscard]] Result<void> writeIndex(const Changes& changes);
    [[nodiscard]] Result<void> commitPending(const Changes& changes);
    [[nodiscard]] Result<bool> settlePending(std::vector<std::string>& names);
    void discard(const Changes& changes);

    std::filesystem::path directory_;
    VaultFolder folder_;
    SecretBytes key_;
    std::unordered_map<Uuid, Date> persisted_; ///< the copy date that each file on disk was written with
    std::optional<std::vector<Uuid>> indexed_; ///< the index on disk, if it is known
};

} // namespace quillane::core
