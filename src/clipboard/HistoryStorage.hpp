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
/// blocks: use it on the vault's queue only.
class HistoryStorage {
public:
    HistoryStorage(std::filesystem::path folder, core::SecretStore& secretStore)
        : folder_(std::move(folder)), secretStore_(secretStore) {}

    enum class Outcome {
        loaded,
        setAside,    ///< damaged for good: it is kept aside, and an empty one begins
        unavailable, ///< the key or the disk is not available now: nothing has changed, and nothing may be saved
        inUse,       ///< another program writes it; otherwise as `unavailable`
    };

    struct Loaded {
        Outcome outcome = Outcome::unavailable;
        core::ClipboardHistory history; ///< empty unless loaded
        bool leavesFiles = false;       ///< something exists that could not be read now
    };

    /// Takes the lock, obtains the key, opens the vault and loads it. Dates in the future come down to `now`, in their
    /// order. After `unavailable` and `inUse` it may be called again.
    [[nodiscard]] Loaded load(core::Date now);

    /// Obtains the key, opens the vault and erases its files, which are not wanted. False when any of that fails.
    [[nodiscard]] bool begin();

    /// Saves the entries. False on failure, and always before something was loaded or begun. A removed folder is made
    /// again; a history put in its place is set aside.
    [[nodiscard]] bool save(std::span<const core::ClipboardEntry> entries, core::Date now);

    /// The next save writes the entry again.
    void invalidate(const core::Uuid& id);

    /// Erases the history on the disk and all that were set aside. Needs no key, but the lock.
    [[nodiscard]] bool erase();

    /// Reads what can be read of a history that was set aside, dates as after `load`. Nothing without a vault.
    [[nodiscard]] core::ClipboardVault::Recovered recover(const core::SetAsideHistory& history, core::Date now) const;

    [[nodiscard]] bool erase(const core::SetAsideHistory& history);

    /// Releases the vault to other programs.
    void close();

    /// Those that were set aside, latest first.
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
