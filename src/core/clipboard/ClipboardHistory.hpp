// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/ClipboardEntry.hpp"
#include "core/clipboard/ClipboardOptions.hpp"

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace quillane::core {

class SearchText;

/// The clipboard history in memory, in the order of insertion. A value: copies share texts and contents.
class ClipboardHistory {
public:
    ClipboardHistory() = default;

    /// Takes over stored entries as they are. Prepares them for searching, which takes on the order of a millisecond
    /// for every 100,000 characters; may be constructed on another thread.
    explicit ClipboardHistory(std::vector<ClipboardEntry> entries);

    [[nodiscard]] const std::vector<ClipboardEntry>& entries() const { return entries_; }

    /// Appends the entry, or renews the copy date of the first one with the same digest, and trims. False when the
    /// options or its size rule it out, or when trimming has removed it.
    bool insert(ClipboardEntry entry, const ClipboardOptions& options);

    /// Adds entries that were recorded later. Of two entries with the same contents the one that is here stays, with
    /// the later copy date, and pinned if either is. Returns the entries whose pin this changed.
    [[nodiscard]] std::vector<Uuid> merge(const ClipboardHistory& later);

    /// Marks the entry as used now.
    void touch(const Uuid& id, Date now);

    void togglePin(const Uuid& id);
    void remove(const Uuid& id);

    enum class Clearing { keepPins, includePins };
    void clear(Clearing clearing);

    /// Removes unpinned entries, those copied longest ago first, until the limits on count and bytes hold or none is
    /// left. Pinned entries are never removed.
    void trim(const ClipboardOptions& options);

    /// The entries that contain every word of the query in text or application name, in the order of display. Case,
    /// diacritics, Hebrew points and Arabic marks make no difference.
    [[nodiscard]] std::vector<ClipboardEntry> filtered(std::string_view query, const ClipboardOptions& options) const;

    /// The bytes of all entries together.
    [[nodiscard]] std::size_t byteCount() const;

    friend bool operator==(const ClipboardHistory& a, const ClipboardHistory& b) { return a.entries_ == b.entries_; }

private:
    void append(ClipboardEntry entry);
    [[nodiscard]] ClipboardEntry* find(const Uuid& id);
    template <typename Predicate>
    void removeIf(Predicate isRemoved);

    std::vector<ClipboardEntry> entries_;
    std::vector<std::shared_ptr<const SearchText>> searchTexts_; ///< of each entry; shared between copies
};

} // namespace quillane::core
