// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardVault.hpp"

#include "core/clipboard/EntryArchive.hpp"
#include "core/support/SealedBox.hpp"

#include <algorithm>
#include <string_view>
#include <system_error>
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
    return ClipboardVault(std::move(*folder), std::move(key));
}

ClipboardVault::Result<std::vector<ClipboardEntry>> ClipboardVault::load() const {
    const bool isPending = folder_.contains(pendingIndexName);
    if (!isPending && !folder_.contains(indexName)) {
        return std::vector<ClipboardEntry>();
    }
    const auto ids = readSealed(folder_, key_, isPending ? pendingIndexName : indexName, &EntryArchive::decodeIndex);
    if (!ids) {
        return tl::unexpected(ids.error());
    }
    std::vector<ClipboardEntry> entries;
    for (const auto& id : *ids) {
        const bool isNew = isPending && folder_.contains(pendingName(id));
        auto entry = readSealed(folder_, key_, isNew ? pendingName(id) : fileName(id), &EntryArchive::decode);
        if (!entry) {
            return tl::unexpected(entry.error());
        }
        if (entry->id != id) {
            return failure(Reason::malformed); // another entry's file under this name
        }
        entries.push_back(std::move(*entry));
    }
    return entries;
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
    if (auto settled = settlePending(*names); !settled) {
        return settled;
    }
    std::vector<Uuid> ids;
    std::vector<const ClipboardEntry*> added;
    std::vector<const ClipboardEntry*> overwritten;
    for (const auto& entry : entries) {
        ids.push_back(entry.id);
        const auto known = persisted_.find(entry.id);
        if (known == persisted_.end() || known->second != entry.copiedAt) {
            (folder_.contains(fileName(entry.id)) ? overwritten : added).push_back(&entry);
        }
    }
    const bool isOneStep = overwritten.empty() || (overwritten.size() == 1 && ids == indexed_);
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
    indexed_.clear();
    if (auto written = writeSealed(isOneStep ? indexName : pendingIndexName, EntryArchive::encodeIndex(ids));
        !written) {
        return written;
    }
    if (!isOneStep) {
        if (auto committed = commitPending(overwritten); !committed) {
            return committed;
        }
    }
    std::unordered_map<Uuid, Date> current;
    current.reserve(entries.size());
    for (const auto& entry : entries) {
        current[entry.id] = entry.copiedAt;
    }
    for (const auto& name : *names) {
        if (isClip(name) && !isFileOfOne(current, name)) {
            if (auto removed = folder_.remove(name); !removed) {
                return removed;
            }
        }
    }
    persisted_ = std::move(current);
    indexed_ = std::move(ids);
    return folder_.flush();
}

/// Ends what a process that was killed had begun: gives the files of a save that counts as done their names, or removes
/// those of one that does not. The names are those in the folder, before and after.
ClipboardVault::Result<void> ClipboardVault::settlePending(std::span<std::string> names) {
    const bool isDone = std::ranges::find(names, pendingIndexName) != names.end();
    for (auto& name : names) {
        if (isClip(name) && name.starts_with(pendingPrefix) && name != pendingIndexName) {
            auto settledName = name.substr(pendingPrefix.size());
            if (auto settled = isDone ? folder_.rename(name, settledName) : folder_.remove(name); !settled) {
                return settled;
            }
            name = std::move(settledName);
        }
    }
    return isDone ? folder_.rename(pendingIndexName, indexName) : Result<void>();
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
    persisted_.clear();
    indexed_.clear();
    return eraseAll(folder_);
}

ClipboardVault::Result<void> ClipboardVault::eraseFiles(const std::filesystem::path& folder) {
    std::error_code error;
    if (!std::filesystem::exists(folder, error) && !error) {
        return {};
    }
    auto opened = VaultFolder::open(folder);
    if (!opened) {
        return tl::unexpected(opened.error());
    }
    return eraseAll(*opened);
}

} // namespace quillane::core
