// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardVault.hpp"

#include "core/clipboard/EntryArchive.hpp"
#include "core/clipboard/VaultNames.hpp"
#include "core/support/SealedBox.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <system_error>
#include <unordered_set>
#include <utility>

// How the vault writes: the order, so that neither a kill nor a power loss leaves a state in between, and how it
// manages with little space.

namespace quillane::core {

namespace {

using Reason = VaultError::Reason;
using vaultNames::isClip;

constexpr std::uintmax_t bytesBesideContents = 4'096; ///< maximum size of a file beside an entry's contents and text

bool isFull(const VaultError& error) {
    return error.systemError == ENOSPC || error.systemError == EDQUOT;
}

/// The free space on the disk. Unlimited if it is not reported.
std::uintmax_t freeBytes(const std::filesystem::path& folder) {
    std::error_code error;
    const auto space = std::filesystem::space(folder, error);
    return error || space.capacity == 0 ? std::numeric_limits<std::uintmax_t>::max() : space.available;
}

std::uintmax_t bytesOf(const ClipboardEntry& entry) {
    return entry.byteCount() + entry.text->size() + bytesBesideContents;
}

} // namespace

/// The difference between the disk and the history.
struct ClipboardVault::Changes {
    std::vector<Uuid> ids;                          ///< of all entries
    std::vector<const ClipboardEntry*> added;       ///< entries without a file
    std::vector<const ClipboardEntry*> overwritten; ///< entries whose file differs
    std::vector<std::string> gone;                  ///< files that belong to no entry
    bool isIndexCurrent = false;
    bool hasSettled = false;  ///< the work of a killed process has been finished
    bool isTogether = false;  ///< overwritten files get their names together with the index
    std::uintmax_t bytes = 0; ///< required space on the disk

    [[nodiscard]] bool writesNames() const { return isTogether || !added.empty(); }
};

ClipboardVault::Result<void> ClipboardVault::save(std::span<const ClipboardEntry> entries) {
    auto saved = write(entries, Overwriting::together);
    if (!saved && isFull(saved.error())) {
        saved = writeInLittleRoom(entries);
    }
    return saved;
}

/// Removed entries make room first, and then each entry is overwritten separately: a kill meanwhile leaves a history
/// without the new entries, or with some of the earlier dates.
ClipboardVault::Result<void> ClipboardVault::writeInLittleRoom(std::span<const ClipboardEntry> entries) {
    const auto names = folder_.names();
    if (!names) {
        return tl::unexpected(names.error());
    }
    const std::unordered_set<std::string> present(names->begin(), names->end());
    std::vector<ClipboardEntry> kept;
    std::ranges::copy_if(entries, std::back_inserter(kept),
                         [&](const ClipboardEntry& entry) { return present.contains(vaultNames::fileOf(entry.id)); });
    if (auto made = write(kept, Overwriting::never); !made) {
        return made;
    }
    return write(entries, Overwriting::singly);
}

ClipboardVault::Result<void> ClipboardVault::write(std::span<const ClipboardEntry> entries, Overwriting overwriting) {
    const auto changes = changesTo(entries, overwriting);
    if (!changes) {
        return tl::unexpected(changes.error());
    }
    auto written = apply(*changes);
    if (!written) {
        discard(*changes);
    }
    return written;
}

ClipboardVault::Result<ClipboardVault::Changes> ClipboardVault::changesTo(std::span<const ClipboardEntry> entries,
                                                                          Overwriting overwriting) {
    auto names = folder_.names();
    if (!names) {
        return tl::unexpected(names.error());
    }
    const auto settled = settlePending(*names);
    if (!settled) {
        return tl::unexpected(settled.error());
    }
    Changes changes;
    changes.hasSettled = *settled;
    const std::unordered_set<std::string> present(names->begin(), names->end());
    std::unordered_set<std::string> current;
    std::uintmax_t largest = 0;
    std::uintmax_t overwrittenBytes = 0;
    for (const auto& entry : entries) {
        changes.ids.push_back(entry.id);
        const auto [name, isNew] = current.insert(vaultNames::fileOf(entry.id));
        const auto known = persisted_.find(entry.id);
        if (!present.contains(*name)) {
            changes.added.push_back(&entry);
            changes.bytes += bytesOf(entry);
        } else if (overwriting != Overwriting::never &&
                   (known == persisted_.end() || known->second != entry.copiedAt)) {
            changes.overwritten.push_back(&entry);
            overwrittenBytes += bytesOf(entry);
            largest = std::max(largest, bytesOf(entry));
        }
    }
    changes.isIndexCurrent = changes.ids == indexed_ && present.contains(vaultNames::index);
    const bool isOneStep = changes.overwritten.empty() || (changes.overwritten.size() == 1 && changes.isIndexCurrent);
    changes.isTogether = overwriting == Overwriting::together && !isOneStep;
    changes.bytes += changes.isTogether ? overwrittenBytes : largest;
    std::ranges::copy_if(*names, std::back_inserter(changes.gone),
                         [&](const std::string& name) { return isClip(name) && !current.contains(name); });
    return changes;
}

/// File names reach the disk before the index that lists them, and the index before files that it no longer lists are
/// removed.
ClipboardVault::Result<void> ClipboardVault::apply(const Changes& changes) {
    if (changes.bytes > 0 && changes.bytes > freeBytes(directory_)) {
        return tl::unexpected(VaultError{Reason::write, ENOSPC}); // rather than fill the disk in vain
    }
    for (const auto* entry : changes.added) {
        if (auto written = writeEntry(*entry, vaultNames::fileOf(entry->id)); !written) {
            return written;
        }
        persisted_[entry->id] = entry->copiedAt;
    }
    for (const auto* entry : changes.overwritten) {
        const auto name = changes.isTogether ? vaultNames::pendingOf(entry->id) : vaultNames::fileOf(entry->id);
        if (auto written = writeEntry(*entry, name); !written) {
            return written;
        }
        if (!changes.isTogether) {
            persisted_[entry->id] = entry->copiedAt;
        }
    }
    const bool writesIndex = !changes.isIndexCurrent || changes.isTogether;
    if (writesIndex) {
        if (auto written = writeIndex(changes); !written) {
            return written;
        }
    }
    if (writesIndex || changes.hasSettled || !changes.added.empty() || !changes.overwritten.empty()) {
        if (auto flushed = folder_.flush(); !flushed) {
            return flushed;
        }
    }
    for (const auto& name : changes.gone) {
        if (auto removed = folder_.remove(name); !removed) {
            return removed;
        }
    }
    const std::unordered_set<Uuid> current(changes.ids.begin(), changes.ids.end());
    std::erase_if(persisted_, [&](const auto& known) { return !current.contains(known.first); });
    return changes.gone.empty() ? Result<void>() : folder_.flush();
}

ClipboardVault::Result<void> ClipboardVault::writeEntry(const ClipboardEntry& entry, const std::string& name) {
    return writeSealed(name, entryArchive::encode(entry));
}

ClipboardVault::Result<void> ClipboardVault::writeSealed(const std::string& name,
                                                         std::optional<std::vector<std::byte>> plaintext) {
    if (!plaintext) {
        return tl::unexpected(VaultError{Reason::tooLarge, 0});
    }
    const auto ends = sealedBox::sealInPlace(key_, *plaintext);
    if (!ends) {
        return tl::unexpected(VaultError{Reason::crypto, 0});
    }
    return folder_.replace(name, {ends->nonce, *plaintext, ends->tag});
}

ClipboardVault::Result<void> ClipboardVault::writeIndex(const Changes& changes) {
    if (changes.writesNames()) {
        if (auto flushed = folder_.flush(); !flushed) {
            return flushed;
        }
    }
    indexed_.reset(); // until the new one exists
    const auto* name = changes.isTogether ? vaultNames::pendingIndex : vaultNames::index;
    if (auto written = writeSealed(name, entryArchive::encodeIndex(changes.ids)); !written) {
        return written;
    }
    if (changes.isTogether) {
        if (auto committed = commitPending(changes); !committed) {
            return committed;
        }
    }
    indexed_ = changes.ids;
    return {};
}

/// The save counts as done: its files get their names.
ClipboardVault::Result<void> ClipboardVault::commitPending(const Changes& changes) {
    if (auto flushed = folder_.flush(); !flushed) {
        return flushed;
    }
    for (const auto* entry : changes.overwritten) {
        if (auto renamed = folder_.rename(vaultNames::pendingOf(entry->id), vaultNames::fileOf(entry->id)); !renamed) {
            return renamed;
        }
        persisted_[entry->id] = entry->copiedAt;
    }
    if (auto flushed = folder_.flush(); !flushed) {
        return flushed;
    }
    return folder_.rename(vaultNames::pendingIndex, vaultNames::index);
}

/// Finishes what a killed process had begun: gives the files of a save that counts as done their names, or removes
/// those of a save that does not. `names` are those in the folder, before and after. Returns whether there was anything
/// to finish.
ClipboardVault::Result<bool> ClipboardVault::settlePending(std::vector<std::string>& names) {
    constexpr auto prefix = vaultNames::pendingPrefix;
    const bool isDone = std::ranges::find(names, vaultNames::pendingIndex) != names.end();
    std::vector<std::string> settled;
    for (const auto& name : names) {
        if (!isClip(name) || !name.starts_with(prefix) || name == vaultNames::pendingIndex) {
            settled.push_back(name);
        } else if (!isDone) {
            if (auto removed = folder_.remove(name); !removed) {
                return tl::unexpected(removed.error());
            }
        } else {
            settled.push_back(name.substr(prefix.size()));
            if (auto renamed = folder_.rename(name, settled.back()); !renamed) {
                return tl::unexpected(renamed.error());
            }
        }
    }
    const bool hadPending = isDone || settled.size() != names.size();
    names = std::move(settled);
    if (isDone) {
        if (auto flushed = folder_.flush(); !flushed) {
            return tl::unexpected(flushed.error());
        }
        if (auto renamed = folder_.rename(vaultNames::pendingIndex, vaultNames::index); !renamed) {
            return tl::unexpected(renamed.error());
        }
        std::erase(names, vaultNames::pendingIndex);
        indexed_.reset(); // another index is in place
    }
    return hadPending;
}

/// Removes the files of a failed save, unless the index on the disk lists them already. Those that cannot be removed
/// now are removed by the next save.
void ClipboardVault::discard(const Changes& changes) {
    const auto names = folder_.names();
    if (!names) {
        return;
    }
    const bool isPending = std::ranges::find(*names, vaultNames::pendingIndex) != names->end();
    for (const auto& name : *names) {
        if (!isPending && vaultNames::isUnfinished(name)) {
            static_cast<void>(folder_.remove(name));
        }
    }
    if (isPending || indexed_ == changes.ids) {
        return;
    }
    for (const auto* entry : changes.added) {
        if (folder_.remove(vaultNames::fileOf(entry->id))) {
            persisted_.erase(entry->id);
        }
    }
}

} // namespace quillane::core
