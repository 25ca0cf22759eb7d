// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/ClipboardHistory.hpp"

#include "core/clipboard/ClipboardSnapshot.hpp"
#include "core/clipboard/SearchText.hpp"

#include <algorithm>
#include <numeric>
#include <unordered_map>
#include <utility>

namespace quillane::core {

namespace {

std::shared_ptr<const SearchText> searchTextOf(const ClipboardEntry& entry) {
    return std::make_shared<const SearchText>(*entry.text + ' ' + entry.sourceName);
}

/// The order of display: true when a comes before b.
bool isBefore(const ClipboardEntry& a, const ClipboardEntry& b, const ClipboardOptions& options) {
    if (options.pinsOnTop && a.pinned != b.pinned) {
        return a.pinned;
    }
    const auto date = options.sortByLastCopy ? &ClipboardEntry::copiedAt : &ClipboardEntry::createdAt;
    if (a.*date != b.*date) {
        return a.*date > b.*date;
    }
    return a.id < b.id;
}

} // namespace

ClipboardHistory::ClipboardHistory(std::vector<ClipboardEntry> entries) {
    for (auto& entry : entries) {
        append(std::move(entry));
    }
}

void ClipboardHistory::append(ClipboardEntry entry) {
    searchTexts_.push_back(searchTextOf(entry));
    entries_.push_back(std::move(entry));
}

ClipboardEntry* ClipboardHistory::find(const Uuid& id) {
    const auto found = std::ranges::find(entries_, id, &ClipboardEntry::id);
    return found != entries_.end() ? &*found : nullptr;
}

template <typename Predicate>
void ClipboardHistory::removeIf(Predicate isRemoved) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (!isRemoved(i)) {
            if (kept != i) {
                entries_[kept] = std::move(entries_[i]);
                searchTexts_[kept] = std::move(searchTexts_[i]);
            }
            ++kept;
        }
    }
    entries_.resize(kept);
    searchTexts_.resize(kept);
}

bool ClipboardHistory::insert(ClipboardEntry entry, const ClipboardOptions& options) {
    if (!options.accepts(entry.kind) || entry.byteCount() > clipboardSnapshot::maximumBytes || entry.items->empty()) {
        return false;
    }
    const std::string digest = entry.digest;
    const auto same = std::ranges::find(entries_, digest, &ClipboardEntry::digest);
    if (same != entries_.end()) {
        same->copiedAt = entry.copiedAt;
    } else {
        append(std::move(entry));
    }
    trim(options);
    return std::ranges::find(entries_, digest, &ClipboardEntry::digest) != entries_.end();
}

std::vector<Uuid> ClipboardHistory::merge(const ClipboardHistory& later) {
    std::unordered_map<std::string, std::size_t> places;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        places.emplace(entries_[i].digest, i);
    }
    std::vector<Uuid> changedPins;
    for (std::size_t i = 0; i < later.entries_.size(); ++i) {
        const auto& entry = later.entries_[i];
        const auto [place, isNew] = places.emplace(entry.digest, entries_.size());
        if (isNew) {
            entries_.push_back(entry);
            searchTexts_.push_back(later.searchTexts_[i]);
            continue;
        }
        auto& same = entries_[place->second];
        same.copiedAt = std::max(same.copiedAt, entry.copiedAt);
        if (entry.pinned && !same.pinned) {
            same.pinned = true;
            changedPins.push_back(same.id);
        }
    }
    return changedPins;
}

void ClipboardHistory::touch(const Uuid& id, Date now) {
    if (auto* entry = find(id)) {
        entry->copiedAt = now;
    }
}

void ClipboardHistory::togglePin(const Uuid& id) {
    if (auto* entry = find(id)) {
        entry->pinned = !entry->pinned;
    }
}

void ClipboardHistory::remove(const Uuid& id) {
    removeIf([&](std::size_t i) { return entries_[i].id == id; });
}

void ClipboardHistory::clear(Clearing clearing) {
    removeIf([&](std::size_t i) { return clearing == Clearing::includePins || !entries_[i].pinned; });
}

void ClipboardHistory::trim(const ClipboardOptions& options) {
    std::vector<std::size_t> oldestFirst;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (!entries_[i].pinned) {
            oldestFirst.push_back(i);
        }
    }
    std::size_t bytes = byteCount();
    std::size_t unpinned = oldestFirst.size();
    const auto fits = [&] { return unpinned <= options.safeLimit() && bytes <= options.byteLimit(); };
    if (fits()) {
        return;
    }
    std::ranges::stable_sort(oldestFirst, {}, [&](std::size_t i) { return entries_[i].copiedAt; });
    std::vector<bool> isRemoved(entries_.size());
    for (const auto i : oldestFirst) {
        if (fits()) {
            break;
        }
        isRemoved[i] = true;
        bytes -= entries_[i].byteCount();
        --unpinned;
    }
    removeIf([&](std::size_t i) { return isRemoved[i]; });
}

std::vector<ClipboardEntry> ClipboardHistory::filtered(std::string_view query, const ClipboardOptions& options) const {
    const SearchQuery terms(query);
    std::vector<const ClipboardEntry*> matching;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (searchTexts_[i]->matches(terms)) {
            matching.push_back(&entries_[i]);
        }
    }
    std::ranges::stable_sort(matching, [&](const auto* a, const auto* b) { return isBefore(*a, *b, options); });
    std::vector<ClipboardEntry> result;
    result.reserve(matching.size());
    for (const auto* entry : matching) {
        result.push_back(*entry);
    }
    return result;
}

std::size_t ClipboardHistory::byteCount() const {
    return std::accumulate(entries_.begin(), entries_.end(), std::size_t{0},
                           [](std::size_t sum, const ClipboardEntry& entry) { return sum + entry.byteCount(); });
}

} // namespace quillane::core
