// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/ShortcutsPage.hpp"

#include "core/localization/Texts.hpp"
#include "settings/Card.hpp"
#include "settings/FeatureRow.hpp"

#include <QLabel>
#include <QVBoxLayout>

namespace quillane {

namespace texts = core::texts;

namespace {

using Side = ChordKey::Side;

ChordKey control() {
    return {"⌃", texts::keyControl, Side::any};
}

ChordKey option(Side side) {
    return {"⌥", texts::keyOption, side};
}

ChordKey shift(Side side) {
    return {"⇧", texts::keyShift, side};
}

} // namespace

ShortcutsPage::ShortcutsPage(const SettingsServices& services) : SettingsPageView(services) {
    auto& direction = addCard(texts::paragraphDirection);
    addChord(direction, "text.alignright", texts::rightToLeft,
             {{control(), shift(Side::right)}, {option(Side::right), shift(Side::right)}});
    addChord(direction, "text.alignleft", texts::leftToRight, {{control(), shift(Side::left)}});
    addNote(texts::directionChords);

    auto& languages = addCard(texts::keyboardLanguages);
    addChord(languages, "globe", texts::nextInputSource, {{option(Side::left), shift(Side::left)}});
    addChord(languages, "textformat.abc", texts::lowerCaseEnglishLetter,
             {{shift(Side::any), {"", texts::anyLetter, Side::any}}});
    addNote(texts::temporaryEnglishExplanation);

    auto& clipboard = addCard(texts::history);
    addChord(clipboard, "clock.arrow.circlepath", texts::openClipboardHistory,
             {{{"⌘", texts::keyCommand, Side::any}, shift(Side::any), {"", texts::keyV, Side::any}}});
    addStretch();
}

void ShortcutsPage::addChord(Card& card, const std::string& symbol, const core::LocalizedText& title,
                             const std::vector<std::vector<ChordKey>>& chords) {
    auto& row = addRow(card, symbol, [title] { return title; });
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    for (const auto& chord : chords) {
        if (layout->count() > 0) {
            auto* either = scaledLabel(0.9, false, "secondary");
            either->setAlignment(Qt::AlignCenter);
            bindText(either, [] { return texts::chordOr; });
            layout->addWidget(either);
        }
        auto* view = new ChordView(chord);
        bind([view](core::AppLanguage language) { view->setLanguage(language); });
        layout->addWidget(view, 0, Qt::AlignTrailing);
    }
    row.setControl(column);
}

} // namespace quillane
