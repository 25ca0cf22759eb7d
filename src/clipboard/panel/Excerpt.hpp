// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/clipboard/SearchMatches.hpp"

#include <QString>
#include <Qt>

#include <optional>
#include <string>
#include <vector>

namespace quillane {

/// The part of a text that a row shows, and its bold parts.
struct Excerpt {
    struct Range {
        qsizetype begin = 0;
        qsizetype length = 0;

        bool operator==(const Range&) const = default;
    };

    QString text;            ///< on one line: white space is a single space
    std::vector<Range> bold; ///< in order

    static constexpr qsizetype maximumCharacters = 400;
};

/// The beginning of the text, or the surroundings of the first match if it is further on.
[[nodiscard]] Excerpt excerpt(const std::string& utf8, const core::SearchQuery& query);

/// The approximate number of characters of an excerpt, up to `most`. Takes no longer for a long text.
[[nodiscard]] qsizetype excerptLength(const std::string& utf8, qsizetype maximum);

/// The unchanged text, and its bold parts.
[[nodiscard]] Excerpt wholeText(const QString& text, const core::SearchQuery& query);

/// The direction of the text's first strong character that is not isolated (Unicode Standard Annex 9, rules P2 and P3).
[[nodiscard]] std::optional<Qt::LayoutDirection> directionOf(const QString& text);

/// The text between marks that isolate its direction (FSI and PDI, Unicode Standard Annex 9).
[[nodiscard]] QString isolated(const QString& text);

} // namespace quillane
