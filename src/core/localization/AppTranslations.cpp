// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/localization/AppTranslations.hpp"

#include "core/localization/TextRow.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace quillane::core::appTranslations {
namespace {

#define QUILLANE_NAME(name, text) QUILLANE_TEXT(name, text, text, text)

#define QUILLANE_TEXT(name, hebrew, english, arabic)                                                                   \
    static_assert(sizeof(hebrew) > 1 && sizeof(english) > 1 && sizeof(arabic) > 1, #name ": a language is missing");   \
    static_assert(placeholderCount(hebrew) == placeholderCount(english) &&                                             \
                      placeholderCount(hebrew) == placeholderCount(arabic),                                            \
                  #name ": the languages differ in their placeholders");                                               \
    static_assert(hasPlainPercents(hebrew) && hasPlainPercents(english) && hasPlainPercents(arabic),                   \
                  #name ": a percent sign that is neither %@ nor %%");
#include "core/localization/AppTranslations.def"
#undef QUILLANE_TEXT

#define QUILLANE_TEXT(name, hebrew, english, arabic) Entry{hebrew, english, arabic},
// As many as there are. NOLINTNEXTLINE(modernize-avoid-c-arrays)
constexpr Entry list[] = {
#include "core/localization/AppTranslations.def"
};
#undef QUILLANE_TEXT
#undef QUILLANE_NAME
constexpr auto rows = std::to_array(list);

/// FNV-1a, 64 bits (RFC 9923): sorting and searching numbers is cheaper than comparing texts that begin alike, for the
/// compiler as well.
constexpr std::uint64_t hashOf(std::string_view text) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char character : text) {
        hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001b3;
    }
    return hash;
}

struct IndexEntry {
    std::uint64_t hash = 0;
    std::size_t row = 0;
};

constexpr auto index = [] {
    std::array<IndexEntry, rows.size()> result{};
    for (std::size_t row = 0; row < rows.size(); ++row) {
        result[row] = {hashOf(rows[row].key), row};
    }
    std::sort(result.begin(), result.end(),
              [](const IndexEntry& left, const IndexEntry& right) { return left.hash < right.hash; });
    return result;
}();

constexpr bool everyHashOnce = [] {
    for (std::size_t position = 1; position < index.size(); ++position) {
        if (index[position - 1].hash == index[position].hash) {
            return false;
        }
    }
    return true;
}();
static_assert(everyHashOnce, "two rows have the same Hebrew text (or, against all odds, the same hash of it)");

} // namespace

const Entry* entry(std::string_view key) {
    const auto hash = hashOf(key);
    const auto* found =
        std::lower_bound(index.begin(), index.end(), hash,
                         [](const IndexEntry& item, std::uint64_t wanted) { return item.hash < wanted; });
    if (found == index.end() || found->hash != hash || rows[found->row].key != key) {
        return nullptr;
    }
    return &rows[found->row];
}

std::span<const Entry> entries() {
    return rows;
}

} // namespace quillane::core::appTranslations
