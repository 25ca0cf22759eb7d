// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/VaultTest.hpp"
#include "core/clipboard/calls/WatchedDisk.hpp"

#include <ostream>

namespace quillane::core::testing {

/// One kind of save: what is on the disk, and what is to be there.
struct VaultSave {
    const char* name;
    std::vector<ClipboardEntry> before;
    std::vector<ClipboardEntry> after;
    std::optional<std::uint64_t> room; ///< bytes that are free; the disk is otherwise large enough
};

inline void PrintTo(const VaultSave& save, std::ostream* out) {
    *out << save.name;
}

[[nodiscard]] inline ClipboardEntry touched(ClipboardEntry entry, double copiedAt) {
    entry.copiedAt = Date{copiedAt};
    return entry;
}

/// Every kind of save that the vault distinguishes.
[[nodiscard]] inline const std::vector<VaultSave>& vaultSaves() {
    static const std::vector<VaultSave> all = [] {
        const auto a = textEntry("a", 1);
        const auto b = textEntry("b", 2);
        const auto c = textEntry("c", 3);
        const auto d = textEntry("d", 4);
        return std::vector<VaultSave>{
            {"FirstEntry", {}, {a}, {}},
            {"NewEntry", {a, b}, {a, b, c}, {}},
            {"NewEntryAtTheLimit", {a, b}, {b, c}, {}},
            {"OneUsedAgain", {a, b}, {a, touched(b, 5)}, {}},
            {"OneUsedAgainAndMoved", {a, b}, {touched(b, 5), a}, {}},
            {"SeveralAtOnce", {a, b, c}, {touched(b, 5), touched(a, 6), d}, {}},
            {"Order", {a, b, c}, {c, a, b}, {}},
            {"Removal", {a, b, c}, {b}, {}},
            {"Everything", {a, b}, {}, {}},
            {"LittleRoom", {a, b, c}, {touched(b, 5), touched(c, 6), d}, 9'500},
        };
    }();
    return all;
}

/// Whether this can be left of the save when it is cut short. On a disk with little room, entries are overwritten one
/// by one, those that are gone go first, and new ones come last.
[[nodiscard]] inline bool isBetween(const std::vector<ClipboardEntry>& found, const VaultSave& save,
                                    bool hasLittleRoom) {
    if (found == save.before || found == save.after) {
        return true;
    }
    const auto isOneOf = [](const ClipboardEntry& entry, const std::vector<ClipboardEntry>& entries) {
        return std::ranges::find(entries, entry) != entries.end();
    };
    const bool isKnown = std::ranges::all_of(
        found, [&](const auto& entry) { return isOneOf(entry, save.before) || isOneOf(entry, save.after); });
    const bool isKept = std::ranges::all_of(save.before, [&](const auto& old) {
        const auto hasId = [&](const auto& entry) { return entry.id == old.id; };
        return std::ranges::none_of(save.after, hasId) || std::ranges::any_of(found, hasId);
    });
    return hasLittleRoom && isKnown && isKept;
}

/// The files that a history leaves, and nothing besides.
[[nodiscard]] inline std::set<std::string> namesOf(const std::vector<ClipboardEntry>& entries) {
    std::set<std::string> names{"index"};
    for (const auto& entry : entries) {
        names.insert(entry.id.toString() + ".clip");
    }
    return names;
}

} // namespace quillane::core::testing
