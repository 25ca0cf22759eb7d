// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/clipboard/EntryDates.hpp"

#include <algorithm>
#include <tuple>

namespace quillane::core::entryDates {

namespace {

/// One of the two dates of every entry. Those that have changed are added to `changed`.
void bringDown(std::span<ClipboardEntry> entries, Date ClipboardEntry::*date, Date now, std::vector<Uuid>& changed) {
    std::vector<ClipboardEntry*> newestFirst;
    for (auto& entry : entries) {
        newestFirst.push_back(&entry);
    }
    std::ranges::stable_sort(newestFirst, [date](const ClipboardEntry* a, const ClipboardEntry* b) {
        return std::tuple(b->*date, a->id) < std::tuple(a->*date, b->id); // the order of display
    });
    Date latest = now;
    for (auto* entry : newestFirst) {
        if (entry->*date <= latest) {
            return; // and so are all that follow
        }
        entry->*date = latest;
        changed.push_back(entry->id);
        latest.secondsSinceReferenceDate -= step;
    }
}

} // namespace

Date next(std::span<const ClipboardEntry> entries, Date now) {
    for (const auto& entry : entries) {
        const auto newest = std::max(entry.copiedAt, entry.createdAt);
        now = std::max(now, Date{newest.secondsSinceReferenceDate + step});
    }
    return now;
}

std::vector<Uuid> bringDown(std::span<ClipboardEntry> entries, Date now) {
    std::vector<Uuid> changed;
    for (const auto date : {&ClipboardEntry::copiedAt, &ClipboardEntry::createdAt}) {
        bringDown(entries, date, now, changed);
    }
    return changed;
}

} // namespace quillane::core::entryDates
