// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/clipboard/ClipboardHistory.hpp"
#include "core/clipboard/ClipboardVault.hpp"
#include "core/clipboard/SetAsideHistories.hpp"
#include "core/support/SecretStore.hpp"

#include <filesystem>
#include <optional>
#include <span>
#include <vector>

namespace quillane {

/// The clipboard history on the disk: its key, its vault, and the histories that were set aside. Everything blocks; on
/// the vault's queue only.
class HistoryStorage {
public:
    HistoryStorage(std::filesystem::path folder, core::SecretStore& secretStore)
        : folder_(std::move(folder)), secretStore_(secretStore) {}

    enum class Outcome {
        loaded,
        setAside,    ///< could not be read, and never will be: it is kept beside, and an empty one begins
        unavailable, ///< the key or the disk cannot be had now: nothing has changed, and nothing is to be saved
    };

    struct Loaded {
        Outcome outcome = Outcome::unavailable;
        core::ClipboardHistory history; ///< empty unless it was loaded
        bool leavesFiles = false;       ///< there is something that could not be read now
    };

    /// Obtains the key, opens the vault and loads it. After `unavailable` it may be called again.
    [[nodiscard]] Loaded load(core::Date now);

    /// Obtains the key and opens the vault whose files are not wanted: they are erased. False when any of that fails.
    [[nodiscard]] bool begin();

    /// Makes the disk say this. False when it does not; always false before something was loaded or begun.
    [[nodiscard]] bool save(std::span<const core::ClipboardEntry> entries);

    /// The next save writes the entry again.
    void invalidate(const core::Uuid& id);

    /// Erases the history on the disk and all that were set aside. Needs no key.
    [[nodiscard]] bool erase();

    /// Reads what can be read of a history that was set aside. Nothing without a vault.
    [[nodiscard]] core::ClipboardVault::Recovered recover(const core::SetAsideHistory& history) const;

    [[nodiscard]] bool erase(const core::SetAsideHistory& history);

    /// Those that were set aside, the latest first.
    [[nodiscard]] std::vector<core::SetAsideHistory> setAside() const;

private:
    [[nodiscard]] core::ClipboardVault::Result<void> open();
    [[nodiscard]] core::ClipboardVault::Result<std::vector<core::ClipboardEntry>> read();

    std::filesystem::path folder_;
    core::SecretStore& secretStore_;
    std::optional<core::ClipboardVault> vault_;
};

} // namespace quillane
