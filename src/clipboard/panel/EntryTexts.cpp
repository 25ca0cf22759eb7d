// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/EntryTexts.hpp"

#include "clipboard/panel/Excerpt.hpp"
#include "core/localization/NumberText.hpp"
#include "core/localization/Texts.hpp"
#include "core/support/Characters.hpp"
#include "views/Text.hpp"

#include <QStringList>

namespace quillane {

namespace texts = core::texts;

namespace {

constexpr qsizetype spokenCharacters = 120;

QString separator(core::AppLanguage language) {
    return language == core::AppLanguage::arabic ? QStringLiteral("، ") : QStringLiteral(", ");
}

} // namespace

QString kindName(const core::ClipboardEntry& entry, core::AppLanguage language) {
    switch (entry.kind) {
    case core::ClipboardKind::image:
        return rendered(texts::imageItem, language);
    case core::ClipboardKind::files:
        return rendered(entry.items->size() > 1 ? texts::filesItem : texts::fileItem, language);
    case core::ClipboardKind::text:
        break;
    }
    return rendered(texts::textItem, language);
}

QStringList fileNames(const core::ClipboardEntry& entry) {
    return QString::fromStdString(*entry.text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QString sizeName(QSize pixels) {
    return QString::fromStdString(core::productText(pixels.width(), pixels.height()));
}

QString sourceLine(const core::ClipboardEntry& entry, QSize pixels, EntryFiles::State state,
                   core::AppLanguage language) {
    QStringList parts;
    if (state == EntryFiles::State::gone) {
        parts << rendered(texts::fileIsGone, language);
    }
    parts << (entry.sourceName.empty() ? kindName(entry, language)
                                       : isolated(QString::fromStdString(entry.sourceName).simplified()));
    if (!pixels.isEmpty()) {
        parts << sizeName(pixels);
    }
    return parts.join(QStringLiteral(" · "));
}

QString accessibleName(const core::ClipboardEntry& entry, EntryFiles::State state, core::AppLanguage language) {
    QStringList parts{kindName(entry, language)};
    if (entry.kind == core::ClipboardKind::text) {
        const auto text = excerpt(*entry.text, core::SearchQuery({})).text.left(spokenCharacters);
        parts << (text.isEmpty() ? rendered(texts::blankText, language) : isolated(text));
    } else if (entry.kind == core::ClipboardKind::files) {
        for (const auto& name : fileNames(entry).mid(0, 5)) {
            parts << isolated(name);
        }
        if (state == EntryFiles::State::gone) {
            parts << rendered(texts::fileIsGone, language);
        }
    }
    if (!entry.sourceName.empty()) {
        parts << rendered(texts::copiedFrom(entry.sourceName), language);
    }
    if (entry.pinned) {
        parts << rendered(texts::itemIsPinned, language);
    }
    return parts.join(separator(language));
}

std::string inOneLine(const std::string& query) {
    constexpr std::size_t maximumCharacters = 40;
    const auto beginning = core::firstCharacters(query, maximumCharacters);
    return beginning.size() == query.size() ? query : std::string(beginning) + "…";
}

} // namespace quillane
