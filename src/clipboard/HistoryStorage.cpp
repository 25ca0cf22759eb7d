// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/HistoryStorage.hpp"

#include "core/clipboard/ClipboardKey.hpp"

#include <cerrno>
#include <utility>

namespace quillane {

namespace {

using core::ClipboardVault;
using core::VaultError;

/// What opening the folder again may mend: a file server that was away, a disk that answered badly once.
bool mayPassAtOnce(const VaultError& error) {
    return error.systemError == EIO || error.systemError == ESTALE;
}

} // namespace

ClipboardVault::Result<void> HistoryStorage::open() {
    vault_.reset();
    auto key = core::obtainClipboardKey(secretStore_);
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
        return {Outcome::loaded, core::ClipboardHistory(std::move(*entries))};
    }
    if (vault_ && entries.error().isDamage() && vault_->setAside(now)) {
        return {Outcome::setAside, {}};
    }
    vault_.reset();
    return {Outcome::unavailable, {}, ClipboardVault::hasFiles(folder_).value_or(true)};
}

bool HistoryStorage::begin() {
    const bool isOpen = open().has_value();
    return erase() && isOpen;
}

bool HistoryStorage::save(std::span<const core::ClipboardEntry> entries) {
    return vault_ && vault_->save(entries);
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
    const bool areErased = ClipboardVault::eraseFiles(folder_).has_value();
    return core::SetAsideHistories::eraseAll(folder_) && areErased;
}

ClipboardVault::Recovered HistoryStorage::recover(const core::SetAsideHistory& history) const {
    return vault_ ? vault_->recover(history.folder).value_or(ClipboardVault::Recovered()) : ClipboardVault::Recovered();
}

bool HistoryStorage::erase(const core::SetAsideHistory& history) {
    return core::SetAsideHistories::erase(history).has_value();
}

std::vector<core::SetAsideHistory> HistoryStorage::setAside() const {
    return core::SetAsideHistories::list(folder_).value_or(std::vector<core::SetAsideHistory>());
}

} // namespace quillane
