// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardVault.hpp"

#include "core/clipboard/EntryArchive.hpp"
#include "core/clipboard/SetAsideHistories.hpp"
#include "core/clipboard/VaultNames.hpp"
#include "core/support/SealedBox.hpp"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace quillane::core {

namespace {

using Reason = VaultError::Reason;
using vaultNames::isClip;
using vaultNames::pendingPrefix;

constexpr std::size_t maximumFileBytes = entryArchive::maximumBytes + sealedBox::nonceSize + sealedBox::tagSize;

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
    const auto plaintext = sealedBox::openInPlace(key, **file);
    if (!plaintext) {
        return failure(Reason::notAuthentic);
    }
    auto value = decode(*plaintext);
    if (!value) {
        return failure(Reason::malformed);
    }
    return std::move(*value);
}

/// The entry with this name. Another entry's file in its place is malformed.
VaultFolder::Result<ClipboardEntry> readEntry(const VaultFolder& folder, const SecretBytes& key,
                                              const std::string& name, const Uuid& id) {
    auto entry = readSealed(folder, key, name, &entryArchive::decode);
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
            name.remove_suffix(vaultNames::extension.size());
            name.remove_prefix(name.starts_with(pendingPrefix) ? pendingPrefix.size() : 0);
            const auto id = Uuid::parse(name);
            if (id && seen.insert(*id).second) {
                ids.push_back(*id);
            }
        }
    }
    return ids;
}

/// The folder, or none when it does not exist.
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

/// First removes the files without which no entry of a history can be read.
VaultFolder::Result<void> eraseAll(VaultFolder& folder) {
    const auto names = folder.names();
    if (!names) {
        return tl::unexpected(names.error());
    }
    for (const auto* name : {vaultNames::pendingIndex, vaultNames::index}) {
        if (auto removed = folder.remove(name); !removed) {
            return removed;
        }
    }
    if (auto flushed = folder.flush(); !flushed) {
        return flushed; // an index that reappears would name files that do not
    }
    for (const auto& name : *names) {
        if (isClip(name)) {
            if (auto removed = folder.remove(name); !removed) {
                return removed;
            }
        }
    }
    return folder.flush();
}

} // namespace

ClipboardVault::Result<ClipboardVault> ClipboardVault::open(const std::filesystem::path& directory, SecretBytes key) {
    if (key.size() != sealedBox::keySize) {
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
    const auto isPending = folder_.contains(vaultNames::pendingIndex);
    const auto hasIndex = folder_.contains(vaultNames::index);
    for (const auto* looked : {&isPending, &hasIndex}) {
        if (!*looked) {
            return tl::unexpected(looked->error());
        }
    }
    if (!*isPending && !*hasIndex) {
        return std::vector<ClipboardEntry>();
    }
    auto ids = readSealed(folder_, key_, *isPending ? vaultNames::pendingIndex : vaultNames::index,
                          &entryArchive::decodeIndex);
    if (!ids) {
        return tl::unexpected(ids.error());
    }
    std::vector<ClipboardEntry> entries;
    for (const auto& id : *ids) {
        const auto isNew = *isPending ? folder_.contains(vaultNames::pendingOf(id)) : false;
        if (!isNew) {
            return tl::unexpected(isNew.error());
        }
        auto entry = readEntry(folder_, key_, *isNew ? vaultNames::pendingOf(id) : vaultNames::fileOf(id), id);
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
    const bool isPending = std::ranges::find(*names, vaultNames::pendingIndex) != names->end();
    const auto index =
        readSealed(folder, key_, isPending ? vaultNames::pendingIndex : vaultNames::index, &entryArchive::decodeIndex);
    const auto ids = index ? *index : idsOf(*names);
    Recovered recovered{{}, ids.size()};
    for (const auto& id : ids) {
        auto entry = readEntry(folder, key_, isPending ? vaultNames::pendingOf(id) : vaultNames::fileOf(id), id);
        if (!entry) {
            entry = readEntry(folder, key_, isPending ? vaultNames::fileOf(id) : vaultNames::pendingOf(id), id);
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
    if (auto moved = setAsideHistories::add(directory_, now); !moved) {
        return moved;
    }
    return reopen();
}

ClipboardVault::Result<void> ClipboardVault::reopen() {
    auto folder = VaultFolder::open(directory_);
    if (!folder) {
        return tl::unexpected(folder.error());
    }
    folder_ = std::move(*folder);
    invalidateCache();
    return {};
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
    return std::ranges::any_of(*names,
                               [](const std::string& name) { return name == vaultNames::index || isClip(name); });
}

} // namespace quillane::core
