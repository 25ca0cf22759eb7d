// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/clipboard/ClipboardHistory.hpp"
#include "core/clipboard/ClipboardVault.hpp"
#include "core/clipboard/SetAsideHistories.hpp"
#include "core/clipboard/VaultLock.hpp"
#include "core/support/SecretStore.hpp"

#include <filesystem>
#include <optional>
#include <span>
#include <vector>

namespace quillane {

/// The clipboard history on the disk: its lock, its key, its vault, and the histories that were set aside. Everything
/// blocks; on the vault's queue only.
class HistoryStorage {
public:
    HistoryStorage(std::filesystem::path folder, core::SecretStore& secretStore)
        : folder_(std::move(folder)), secretStore_(secretStore) {}

    enum class Outcome {
        loaded,
        setAside,    ///< could not be read, and never will be: it is kept beside, and an empty one begins
        unavailable, ///< the key or the disk cannot be had now: nothing has changed, and nothing is to be saved
        inUse,       ///< another program writes it: as `unavailable`
    };

    struct Loaded {
        Outcome outcome = Outcome::unavailable;
        core::ClipboardHistory history; ///< empty unless it was loaded
        bool leavesFiles = false;       ///< there is something that could not be read now
    };

    /// Takes the lock, obtains the key, opens the vault and loads it. Dates in the future come down to `now`, in their
    /// order. After `unavailable` and `inUse` it may be called again.
    [[nodiscard]] Loaded load(core::Date now);

    /// Obtains the key and opens the vault whose files are not wanted: they are erased. False when any of that fails.
    [[nodiscard]] bool begin();

    /// Makes the disk say this. False when it does not; always false before something was loaded or begun. A folder
    /// that was removed is made again; a history that somebody has put in its place is set aside.
    [[nodiscard]] bool save(std::span<const core::ClipboardEntry> entries, core::Date now);

    /// The next save writes the entry again.
    void invalidate(const core::Uuid& id);

    /// Erases the history on the disk and all that were set aside. Needs no key, but the lock.
    [[nodiscard]] bool erase();

    /// Reads what can be read of a history that was set aside, dates as after `load`. Nothing without a vault.
    [[nodiscard]] core::ClipboardVault::Recovered recover(const core::SetAsideHistory& history, core::Date now) const;

    [[nodiscard]] bool erase(const core::SetAsideHistory& history);

    /// Gives the vault back: another program may have it.
    void close();

    /// Those that were set aside, the latest first.
    [[nodiscard]] std::vector<core::SetAsideHistory> setAside() const;

private:
    [[nodiscard]] core::ClipboardVault::Result<void> lock();
    [[nodiscard]] core::ClipboardVault::Result<void> open();
    [[nodiscard]] core::ClipboardVault::Result<void> putInPlace(core::Date now);
    [[nodiscard]] core::ClipboardVault::Result<std::vector<core::ClipboardEntry>> read();

    std::filesystem::path folder_;
    core::SecretStore& secretStore_;
    std::optional<core::VaultLock> lock_; ///< while there is a vault, and while one is opened or erased
    std::optional<core::ClipboardVault> vault_;
};

} // namespace quillane
