// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/Excerpt.hpp"

#include <QList>

#include <algorithm>
#include <string_view>

namespace quillane {

namespace {

constexpr std::size_t headBytes = 4 * Excerpt::maximumCharacters;
constexpr std::size_t searchedBytes = 32 * 1024; ///< a match further on is not shown
constexpr std::size_t bytesBeforeMatch = 24;

/// At most this many bytes from a position, without cutting a character.
std::string_view piece(std::string_view utf8, std::size_t begin, std::size_t count) {
    const auto isContinuation = [&](std::size_t at) {
        return at < utf8.size() && (static_cast<unsigned char>(utf8[at]) & 0xC0U) == 0x80U;
    };
    begin = std::min(begin, utf8.size());
    auto end = std::min(begin + count, utf8.size());
    while (begin > 0 && isContinuation(begin)) {
        --begin;
    }
    while (end > begin && isContinuation(end)) {
        --end;
    }
    return utf8.substr(begin, end - begin);
}

QString collapsed(std::string_view utf8) {
    auto text = QString::fromUtf8(utf8.data(), std::ssize(utf8)).simplified();
    text.removeIf([](QChar c) { return c.category() == QChar::Other_Control; });
    return text.left(Excerpt::maximumCharacters);
}

} // namespace

Excerpt wholeText(const QString& text, const core::SearchQuery& query) {
    Excerpt result{text, {}};
    if (query.isEmpty()) {
        return result;
    }
    const auto utf8 = text.toStdString();
    for (const auto& range : core::searchMatches(utf8, query)) {
        const auto units = [&](std::size_t begin, std::size_t end) {
            return QString::fromUtf8(utf8.data() + begin, static_cast<qsizetype>(end - begin)).size();
        };
        result.bold.push_back({units(0, range.begin), units(range.begin, range.end)});
    }
    return result;
}

Excerpt excerpt(const std::string& utf8, const core::SearchQuery& query) {
    auto result = wholeText(collapsed(piece(utf8, 0, headBytes)), query);
    if (query.isEmpty() || !result.bold.empty() || utf8.size() <= headBytes) {
        return result;
    }
    const auto searched = piece(utf8, 0, searchedBytes);
    const auto matches = core::searchMatches(searched, query);
    if (matches.empty()) {
        return result;
    }
    const auto first = matches.front().begin;
    const auto begin = first - std::min(first, bytesBeforeMatch);
    const auto space = searched.substr(begin, first - begin).find(' ');
    const auto from = space == std::string_view::npos ? begin : begin + space;
    return wholeText(QStringLiteral("… ") + collapsed(piece(utf8, from, headBytes)), query);
}

qsizetype excerptLength(const std::string& utf8, qsizetype maximum) {
    if (utf8.size() > 8 * static_cast<std::size_t>(maximum)) {
        return maximum; // unless it is mostly white space
    }
    return collapsed(piece(utf8, 0, 4 * static_cast<std::size_t>(maximum))).size();
}

std::optional<Qt::LayoutDirection> directionOf(const QString& text) {
    int isolates = 0;
    for (const auto c : text.toUcs4()) {
        switch (QChar::direction(c)) {
        case QChar::DirLRI:
        case QChar::DirRLI:
        case QChar::DirFSI:
            ++isolates;
            break;
        case QChar::DirPDI:
            isolates = std::max(0, isolates - 1);
            break;
        case QChar::DirL:
            if (isolates == 0) {
                return Qt::LeftToRight;
            }
            break;
        case QChar::DirR:
        case QChar::DirAL:
            if (isolates == 0) {
                return Qt::RightToLeft;
            }
            break;
        default:
            break;
        }
    }
    return std::nullopt;
}

QString isolated(const QString& text) {
    return QChar(0x2068) + text + QChar(0x2069);
}

} // namespace quillane
