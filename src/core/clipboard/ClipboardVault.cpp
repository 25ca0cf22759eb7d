// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardVault.hpp"

#include "core/clipboard/EntryArchive.hpp"
#include "core/clipboard/SetAsideHistories.hpp"
#include "core/support/SealedBox.hpp"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace quillane::core {

namespace {

using Reason = VaultError::Reason;

constexpr std::string_view extension = ".clip";
constexpr std::string_view pendingPrefix = "pending-";
constexpr const char* indexName = "index";
constexpr const char* pendingIndexName = "pending-index.clip";
constexpr std::size_t maximumFileBytes = EntryArchive::maximumBytes + SealedBox::nonceSize + SealedBox::tagSize;

std::string fileName(const Uuid& id) {
    return id.toString() + std::string(extension);
}

std::string pendingName(const Uuid& id) {
    return std::string(pendingPrefix) + fileName(id);
}

bool isClip(std::string_view name) {
    return name.size() > extension.size() && name.ends_with(extension);
}

/// Whether it is the name of the file of one of these entries.
bool isFileOfOne(const std::unordered_map<Uuid, Date>& entries, std::string_view name) {
    const auto id = Uuid::parse(name.substr(0, name.size() - extension.size()));
    return id && entries.contains(*id) && name == fileName(*id);
}

tl::unexpected<VaultError> failure(Reason reason) {
    return tl::unexpected(VaultError{reason, 0});
}

/// Reads, opens and decodes one file.
template <typename Value>
VaultFolder::Result<Value> readSealed(const VaultFolder& folder, const SecretBytes& key, const std::string& name,
                                      std::optional<Value> (*decode)(std::span<const std::byte>)) {
    auto file = folder.read(name, maximumFileBytes);
    if (!file) {
        return tl::unexpected(file.error());
    }
    if (!*file) {
        return failure(Reason::read);
    }
    const auto plaintext = SealedBox::openInPlace(key, **file);
    if (!plaintext) {
        return failure(Reason::notAuthentic);
    }
    auto value = decode(*plaintext);
    if (!value) {
        return failure(Reason::malformed);
    }
    return std::move(*value);
}

/// The entry of that name. Another entry's file in its place is malformed.
VaultFolder::Result<ClipboardEntry> readEntry(const VaultFolder& folder, const SecretBytes& key,
                                              const std::string& name, const Uuid& id) {
    auto entry = readSealed(folder, key, name, &EntryArchive::decode);
    if (entry && entry->id != id) {
        return failure(Reason::malformed);
    }
    return entry;
}

std::unordered_map<Uuid, Date> copyDates(std::span<const ClipboardEntry> entries) {
    std::unordered_map<Uuid, Date> dates;
    dates.reserve(entries.size());
    for (const auto& entry : entries) {
        dates[entry.id] = entry.copiedAt;
    }
    return dates;
}

/// The entries whose files have these names.
std::vector<Uuid> idsOf(std::span<const std::string> names) {
    std::vector<Uuid> ids;
    std::unordered_set<Uuid> seen;
    for (std::string_view name : names) {
        if (isClip(name)) {
            name.remove_suffix(extension.size());
            name.remove_prefix(name.starts_with(pendingPrefix) ? pendingPrefix.size() : 0);
            const auto id = Uuid::parse(name);
            if (id && seen.insert(*id).second) {
                ids.push_back(*id);
            }
        }
    }
    return ids;
}

/// The folder, or none where there is no such folder.
VaultFolder::Result<std::optional<VaultFolder>> openExisting(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::exists(path, error) && !error) {
        return std::optional<VaultFolder>();
    }
    auto folder = VaultFolder::open(path);
    if (!folder) {
        return tl::unexpected(folder.error());
    }
    return std::optional(std::move(*folder));
}

/// Removes what no entry of a history could be read without first.
VaultFolder::Result<void> eraseAll(VaultFolder& folder) {
    const auto names = folder.names();
    if (!names) {
        return tl::unexpected(names.error());
    }
    std::vector<std::string> doomed{pendingIndexName, indexName};
    std::ranges::copy_if(*names, std::back_inserter(doomed), isClip);
    for (const auto& name : doomed) {
        if (auto removed = folder.remove(name); !removed) {
            return removed;
        }
    }
    return folder.flush();
}

} // namespace

ClipboardVault::Result<ClipboardVault> ClipboardVault::open(const std::filesystem::path& directory, SecretBytes key) {
    if (key.size() != SealedBox::keySize) {
        return failure(Reason::wrongKeySize);
    }
    auto folder = VaultFolder::open(directory);
    if (!folder) {
        return tl::unexpected(folder.error());
    }
    return ClipboardVault(cleanFolderPath(directory), std::move(*folder), std::move(key));
}

ClipboardVault::Result<std::vector<ClipboardEntry>> ClipboardVault::load() {
    invalidateCache();
    const auto isPending = folder_.contains(pendingIndexName);
    const auto hasIndex = folder_.contains(indexName);
    for (const auto* looked : {&isPending, &hasIndex}) {
        if (!*looked) {
            return tl::unexpected(looked->error());
        }
    }
    if (!*isPending && !*hasIndex) {
        return std::vector<ClipboardEntry>();
    }
    auto ids = readSealed(folder_, key_, *isPending ? pendingIndexName : indexName, &EntryArchive::decodeIndex);
    if (!ids) {
        return tl::unexpected(ids.error());
    }
    std::vector<ClipboardEntry> entries;
    for (const auto& id : *ids) {
        const auto isNew = *isPending ? folder_.contains(pendingName(id)) : false;
        if (!isNew) {
            return tl::unexpected(isNew.error());
        }
        auto entry = readEntry(folder_, key_, *isNew ? pendingName(id) : fileName(id), id);
        if (!entry) {
            return tl::unexpected(entry.error());
        }
        entries.push_back(std::move(*entry));
    }
    persisted_ = copyDates(entries);
    if (!*isPending) {
        indexed_ = std::move(*ids);
    }
    return entries;
}

ClipboardVault::Result<ClipboardVault::Recovered>
ClipboardVault::recover(const std::filesystem::path& directory) const {
    const auto opened = openExisting(directory);
    if (!opened) {
        return tl::unexpected(opened.error());
    }
    if (!*opened) {
        return Recovered();
    }
    const auto& folder = **opened;
    const auto names = folder.names();
    if (!names) {
        return tl::unexpected(names.error());
    }
    const bool isPending = std::ranges::find(*names, pendingIndexName) != names->end();
    const auto index = readSealed(folder, key_, isPending ? pendingIndexName : indexName, &EntryArchive::decodeIndex);
    const auto ids = index ? *index : idsOf(*names);
    Recovered recovered{{}, ids.size()};
    for (const auto& id : ids) {
        auto entry = readEntry(folder, key_, isPending ? pendingName(id) : fileName(id), id);
        if (!entry) {
            entry = readEntry(folder, key_, isPending ? fileName(id) : pendingName(id), id);
        }
        if (entry) {
            recovered.entries.push_back(std::move(*entry));
        }
    }
    if (!index) {
        std::ranges::stable_sort(recovered.entries, {}, &ClipboardEntry::createdAt);
    }
    return recovered;
}

ClipboardVault::Result<void> ClipboardVault::setAside(Date now) {
    if (auto moved = SetAsideHistories::add(directory_, now); !moved) {
        return moved;
    }
    auto folder = VaultFolder::open(directory_);
    if (!folder) {
        return tl::unexpected(folder.error());
    }
    folder_ = std::move(*folder);
    invalidateCache();
    return {};
}

ClipboardVault::Result<void> ClipboardVault::writeSealed(const std::string& name,
                                                         std::optional<std::vector<std::byte>> plaintext) {
    if (!plaintext) {
        return failure(Reason::tooLarge);
    }
    const auto ends = SealedBox::sealInPlace(key_, *plaintext);
    if (!ends) {
        return failure(Reason::crypto);
    }
    return folder_.replace(name, {ends->nonce, *plaintext, ends->tag});
}

ClipboardVault::Result<void> ClipboardVault::save(std::span<const ClipboardEntry> entries) {
    auto names = folder_.names();
    if (!names) {
        return tl::unexpected(names.error());
    }
    const auto settled = settlePending(*names);
    if (!settled) {
        return tl::unexpected(settled.error());
    }
    bool isChanged = *settled;
    const std::unordered_set<std::string> present(names->begin(), names->end());
    std::vector<Uuid> ids;
    std::vector<const ClipboardEntry*> added;
    std::vector<const ClipboardEntry*> overwritten;
    for (const auto& entry : entries) {
        ids.push_back(entry.id);
        const auto known = persisted_.find(entry.id);
        if (!present.contains(fileName(entry.id))) {
            added.push_back(&entry);
        } else if (known == persisted_.end() || known->second != entry.copiedAt) {
            overwritten.push_back(&entry);
        }
    }
    const bool isIndexCurrent = ids == indexed_ && present.contains(indexName);
    const bool isOneStep = overwritten.empty() || (overwritten.size() == 1 && isIndexCurrent);
    isChanged = isChanged || !added.empty() || !overwritten.empty() || !isIndexCurrent;
    for (const auto* entry : added) {
        if (auto written = writeSealed(fileName(entry->id), EntryArchive::encode(*entry)); !written) {
            return written;
        }
        persisted_[entry->id] = entry->copiedAt;
    }
    for (const auto* entry : overwritten) {
        const auto name = isOneStep ? fileName(entry->id) : pendingName(entry->id);
        if (auto written = writeSealed(name, EntryArchive::encode(*entry)); !written) {
            return written;
        }
        if (isOneStep) {
            persisted_[entry->id] = entry->copiedAt;
        }
    }
    if (!isIndexCurrent || !isOneStep) {
        indexed_.reset();
        if (auto written = writeSealed(isOneStep ? indexName : pendingIndexName, EntryArchive::encodeIndex(ids));
            !written) {
            return written;
        }
    }
    if (!isOneStep) {
        if (auto committed = commitPending(overwritten); !committed) {
            return committed;
        }
    }
    auto current = copyDates(entries);
    for (const auto& name : *names) {
        if (isClip(name) && !isFileOfOne(current, name)) {
            if (auto removed = folder_.remove(name); !removed) {
                return removed;
            }
            isChanged = true;
        }
    }
    persisted_ = std::move(current);
    indexed_ = std::move(ids);
    return isChanged ? folder_.flush() : Result<void>();
}

/// Ends what a process that was killed had begun: gives the files of a save that counts as done their names, or removes
/// those of one that does not. The names are those in the folder, before and after. Whether there was something to end.
ClipboardVault::Result<bool> ClipboardVault::settlePending(std::vector<std::string>& names) {
    const bool isDone = std::ranges::find(names, pendingIndexName) != names.end();
    std::vector<std::string> settled;
    for (const auto& name : names) {
        if (!isClip(name) || !name.starts_with(pendingPrefix) || name == pendingIndexName) {
            settled.push_back(name);
        } else if (!isDone) {
            if (auto removed = folder_.remove(name); !removed) {
                return tl::unexpected(removed.error());
            }
        } else {
            settled.push_back(name.substr(pendingPrefix.size()));
            if (auto renamed = folder_.rename(name, settled.back()); !renamed) {
                return tl::unexpected(renamed.error());
            }
        }
    }
    const bool hadPending = isDone || settled.size() != names.size();
    names = std::move(settled);
    if (isDone) {
        if (auto renamed = folder_.rename(pendingIndexName, indexName); !renamed) {
            return tl::unexpected(renamed.error());
        }
    }
    return hadPending;
}

ClipboardVault::Result<void> ClipboardVault::commitPending(std::span<const ClipboardEntry* const> overwritten) {
    for (const auto* entry : overwritten) {
        if (auto renamed = folder_.rename(pendingName(entry->id), fileName(entry->id)); !renamed) {
            return renamed;
        }
        persisted_[entry->id] = entry->copiedAt;
    }
    return folder_.rename(pendingIndexName, indexName);
}

ClipboardVault::Result<void> ClipboardVault::erase() {
    invalidateCache();
    return eraseAll(folder_);
}

ClipboardVault::Result<void> ClipboardVault::eraseFiles(const std::filesystem::path& folder) {
    auto opened = openExisting(folder);
    if (!opened) {
        return tl::unexpected(opened.error());
    }
    return *opened ? eraseAll(**opened) : Result<void>();
}

ClipboardVault::Result<bool> ClipboardVault::hasFiles(const std::filesystem::path& folder) {
    const auto opened = openExisting(folder);
    if (!opened) {
        return tl::unexpected(opened.error());
    }
    const auto names = *opened ? (*opened)->names() : std::vector<std::string>();
    if (!names) {
        return tl::unexpected(names.error());
    }
    return std::ranges::any_of(*names, [](const std::string& name) { return name == indexName || isClip(name); });
}

} // namespace quillane::core
