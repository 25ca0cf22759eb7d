// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/pages/ShortcutsPage.hpp"

#include "core/keyboard/ChordSign.hpp"
#include "core/localization/Texts.hpp"
#include "settings/Card.hpp"
#include "settings/FeatureRow.hpp"
#include "settings/pages/ApplicationSourcesView.hpp"
#include "views/Labels.hpp"

#include <QLabel>
#include <QVBoxLayout>

namespace quillane {

namespace texts = core::texts;

namespace {

using Side = ChordKey::Side;

/// The modifiers as named on the desktop's keyboard. The keys of a Mac have symbols beside their names.
struct Modifiers {
    core::Desktop desktop;

    [[nodiscard]] ChordKey control() const { return key("⌃", texts::keyControl, texts::keyCtrl); }

    [[nodiscard]] ChordKey option(Side side) const { return key("⌥", texts::keyOption, texts::keyAlt, side); }

    [[nodiscard]] ChordKey shift(Side side) const { return key("⇧", texts::keyShift, texts::keyShift, side); }

    [[nodiscard]] ChordKey command() const { return key("⌘", texts::keyCommand, texts::keySuper); }

private:
    [[nodiscard]] ChordKey key(const char* sign, const core::TextRow<0>& onMacOS, const core::TextRow<0>& onLinux,
                               Side side = Side::any) const {
        return desktop == core::Desktop::macOS ? ChordKey{sign, onMacOS, side} : ChordKey{"", onLinux, side};
    }
};

} // namespace

ShortcutsPage::ShortcutsPage(const SettingsServices& services) : SettingsPageView(services) {
    const Modifiers keys{services.platform.desktop};
    auto& direction = addCard(texts::paragraphDirection);
    addChord(direction, "text.alignright", texts::rightToLeft,
             {{keys.control(), keys.shift(Side::right)}, {keys.option(Side::right), keys.shift(Side::right)}});
    addChord(direction, "text.alignleft", texts::leftToRight, {{keys.control(), keys.shift(Side::left)}});
    addNote(texts::directionChords.on(services.platform.desktop));

    auto& languages = addCard(texts::keyboardLanguages);
    addChord(languages, "globe", texts::nextInputSource, {{keys.option(Side::left), keys.shift(Side::left)}});
    addChord(languages, "textformat.abc", texts::lowerCaseEnglishLetter,
             {{keys.shift(Side::any), {"", texts::anyLetter, Side::any}}});
    addNote(texts::temporaryEnglishExplanation);

    auto& model = services.model;
    auto& wrongLayout = addCard(texts::wrongLayout);
    addChord(wrongLayout, "arrow.triangle.2.circlepath", texts::retypeWordOrSelection,
             {{keys.option(Side::left), keys.shift(Side::right)}});
    addFeature(wrongLayout, {.symbol = "keyboard",
                             .title = texts::fixWrongLayout,
                             .explanation = texts::fixWrongLayoutExplanation,
                             .isOn = [&model] { return model.fixesWrongLayout(); },
                             .set = [&model](bool on) { model.setFixesWrongLayout(on); }});

    auto& defaults = *services.platform.userDefaults;
    addApplicationSources(addCard());
    addFeature(addCard(),
               {.symbol = "paragraphsign",
                .title = texts::signAtCursor,
                .explanation = texts::signAtCursorExplanation,
                .isOn = [&defaults] { return defaults.boolean(core::chordSignKey).value_or(true); },
                .set = [&defaults](bool on) { defaults.setObject(core::chordSignKey, core::PropertyListValue(on)); }});

    auto& clipboard = addCard(texts::history);
    addChord(clipboard, "clock.arrow.circlepath", texts::openClipboardHistory,
             {{keys.command(), keys.shift(Side::any), {"", texts::keyV, Side::any}}});
    addStretch();
}

void ShortcutsPage::addApplicationSources(Card& card) {
    auto& defaults = *services().platform.userDefaults;
    const auto isOn = [&defaults] { return core::ApplicationSourceOptions::load(defaults).enabled; };
    addFeature(card, {.symbol = "rectangle.on.rectangle",
                      .title = texts::sourceOfApplication,
                      .explanation = texts::sourceOfApplicationExplanation,
                      .isOn = isOn,
                      .set = [&defaults](bool on) {
                          auto options = core::ApplicationSourceOptions::load(defaults);
                          options.enabled = on;
                          options.save(defaults);
                      }});
    auto* fixed = new ApplicationSourcesView(services());
    card.addRow(fixed);
    bind([fixed](core::AppLanguage) { fixed->refresh(); });
    bindVisible(fixed, isOn);
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
