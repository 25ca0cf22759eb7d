// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/HistoryStorage.hpp"

#include "core/clipboard/EntryDates.hpp"
#include "core/clipboard/VaultKey.hpp"

#include <cerrno>
#include <utility>

namespace quillane {

namespace {

using core::ClipboardVault;
using core::VaultError;

/// Failures that opening the folder again may repair: a file server that was unreachable, a disk that failed once.
bool mayPassAtOnce(const VaultError& error) {
    return error.systemError == EIO || error.systemError == ESTALE;
}

} // namespace

/// Takes the lock unless it is already held. Before the key: a program that is kept out must not make one.
ClipboardVault::Result<void> HistoryStorage::lock() {
    if (lock_ && lock_->holds(folder_)) {
        return {};
    }
    lock_.reset();
    auto acquired = core::VaultLock::acquire(folder_);
    if (!acquired) {
        return tl::unexpected(acquired.error());
    }
    lock_ = std::move(*acquired);
    return {};
}

ClipboardVault::Result<void> HistoryStorage::open() {
    vault_.reset();
    if (auto locked = lock(); !locked) {
        return locked;
    }
    auto key = core::obtainVaultKey(secretStore_);
    if (!key) {
        return tl::unexpected(VaultError{VaultError::Reason::noKey, 0});
    }
    auto opened = ClipboardVault::open(folder_, std::move(*key));
    if (!opened) {
        return tl::unexpected(opened.error());
    }
    vault_ = std::move(*opened);
    return {};
}

ClipboardVault::Result<std::vector<core::ClipboardEntry>> HistoryStorage::read() {
    if (auto opened = open(); !opened) {
        return tl::unexpected(opened.error());
    }
    return vault_->load();
}

HistoryStorage::Loaded HistoryStorage::load(core::Date now) {
    auto entries = read();
    if (!entries && mayPassAtOnce(entries.error())) {
        entries = read();
    }
    if (entries) {
        for (const auto& id : core::entryDates::bringDown(*entries, now)) {
            vault_->invalidateCache(id);
        }
        return {Outcome::loaded, core::ClipboardHistory(std::move(*entries))};
    }
    if (vault_ && entries.error().isDamage() && vault_->setAside(now) && lock()) {
        return {Outcome::setAside, {}};
    }
    vault_.reset();
    lock_.reset(); // another program may have the key
    const bool isInUse = entries.error().reason == VaultError::Reason::inUse;
    return {isInUse ? Outcome::inUse : Outcome::unavailable, {}, ClipboardVault::hasFiles(folder_).value_or(true)};
}

bool HistoryStorage::begin() {
    const bool isOpen = open().has_value();
    return erase() && isOpen;
}

/// If the folder was removed or replaced, the vault continues in the current one.
ClipboardVault::Result<void> HistoryStorage::putInPlace(core::Date now) {
    if (auto locked = lock(); !locked || vault_->isInPlace()) {
        return locked;
    }
    const bool isOurs = vault_->isStale();
    if (auto reopened = vault_->reopen(); !reopened || isOurs) {
        return reopened;
    }
    const auto hasFiles = ClipboardVault::hasFiles(folder_);
    if (!hasFiles) {
        return tl::unexpected(hasFiles.error());
    }
    if (*hasFiles) {
        if (auto moved = vault_->setAside(now); !moved) {
            return moved;
        }
    }
    return lock();
}

bool HistoryStorage::save(std::span<const core::ClipboardEntry> entries, core::Date now) {
    return vault_ && putInPlace(now) && vault_->save(entries);
}

void HistoryStorage::invalidate(const core::Uuid& id) {
    if (vault_) {
        vault_->invalidateCache(id);
    }
}

bool HistoryStorage::erase() {
    if (vault_) {
        vault_->invalidateCache();
    }
    if (!lock()) {
        return false; // it belongs to another program
    }
    const bool areErased = ClipboardVault::eraseFiles(folder_).has_value();
    return core::setAsideHistories::eraseAll(folder_) && areErased;
}

ClipboardVault::Recovered HistoryStorage::recover(const core::SetAsideHistory& history, core::Date now) const {
    auto recovered =
        vault_ ? vault_->recover(history.folder).value_or(ClipboardVault::Recovered()) : ClipboardVault::Recovered();
    core::entryDates::bringDown(recovered.entries, now);
    return recovered;
}

bool HistoryStorage::erase(const core::SetAsideHistory& history) {
    return core::setAsideHistories::erase(history).has_value();
}

void HistoryStorage::close() {
    vault_.reset();
    lock_.reset();
}

std::vector<core::SetAsideHistory> HistoryStorage::setAside() const {
    return core::setAsideHistories::list(folder_).value_or(std::vector<core::SetAsideHistory>());
}

} // namespace quillane
