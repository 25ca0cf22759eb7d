// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

/// The table of translations, keyed by the Hebrew source text. Its rows are in AppTranslations.def.
namespace quillane::core::appTranslations {

struct Entry {
    std::string_view key; ///< the Hebrew text
    std::string_view english;
    std::string_view arabic;
};

/// The entry of exactly this Hebrew text, or null. The table is a constant of the program: nothing is built at
/// start-up.
[[nodiscard]] const Entry* entry(std::string_view key);

/// Every entry, in no particular order.
[[nodiscard]] std::span<const Entry> entries();

} // namespace quillane::core::appTranslations
