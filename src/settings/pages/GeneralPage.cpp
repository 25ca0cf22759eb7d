// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/pages/GeneralPage.hpp"

#include "core/localization/Texts.hpp"
#include "fileshare/FileShareSettingsView.hpp"
#include "settings/Card.hpp"
#include "settings/FeatureRow.hpp"
#include "settings/pages/LoginItemSettingsView.hpp"
#include "views/Text.hpp"

#include <QLayout>

namespace quillane {

namespace texts = core::texts;

GeneralPage::GeneralPage(const SettingsServices& services) : SettingsPageView(services) {
    addFeatures();
    addKeepAwake();
    addLoginItem();
    auto* fileShare =
        new FileShareSettingsView(*services.platform.userDefaults, services.preferences, services.platform.desktop);
    fileShare->layout()->setContentsMargins(14, 10, 14, 10);
    auto& card = addCard();
    card.addRow(fileShare);
    addFileManager(card);
    addStretch();
}

SettingsPageView::Feature GeneralPage::optionFeature(const char* symbol, const core::LocalizedText& title,
                                                     const core::LocalizedText& explanation,
                                                     bool core::FeatureOptions::*option) {
    auto& model = services().model;
    return {.symbol = symbol,
            .title = title,
            .explanation = explanation,
            .isOn = [&model, option] { return model.options().*option; },
            .set =
                [&model, option](bool on) {
                    auto options = model.options();
                    options.*option = on;
                    model.setOptions(options);
                }};
}

void GeneralPage::addFeatures() {
    using Options = core::FeatureOptions;
    const auto desktop = services().platform.desktop;
    auto& card = addCard(texts::keyboardAndText);
    addFeature(card, optionFeature("textformat.abc", texts::temporaryEnglish, texts::temporaryEnglishExplanation,
                                   &Options::shiftEnglish));
    addFeature(card, optionFeature("globe", texts::switchLanguage.on(desktop),
                                   texts::switchLanguageExplanation.on(desktop), &Options::languageSwitch));
    addFeature(card, optionFeature("paragraphsign", texts::paragraphDirectionShortcuts,
                                   texts::paragraphDirectionExplanation, &Options::writingDirection));
    addFeature(card, optionFeature("rectangle.on.rectangle", texts::excludeScreenSharing.on(desktop),
                                   texts::excludeScreenSharingExplanation.on(desktop), &Options::excludeScreenSharing));
}

void GeneralPage::addKeepAwake() {
    auto& model = services().model;
    const auto desktop = services().platform.desktop;
    auto& card = addCard(texts::energy);
    addFeature(card, optionFeature("cup.and.saucer", texts::keepMacAwake.on(desktop),
                                   texts::keepAwakeExplanation.on(desktop), &core::FeatureOptions::keepAwake));
    auto* status = new FeatureRow;
    status->setObjectName(QStringLiteral("keepAwakeStatus"));
    bind([this, &model, status, desktop](core::AppLanguage language) {
        const auto& runtime = model.runtime();
        const auto* symbol = runtime.keepAwakeFailed   ? "exclamationmark.circle"
                             : runtime.keepAwakeActive ? "cup.and.saucer.fill"
                                                       : "moon";
        status->setSymbol(tileSymbol(symbol, runtime.keepAwakeActive), runtime.keepAwakeActive);
        status->setTitle(rendered(runtime.keepAwakeStatus, language));
        status->setExplanation(rendered(texts::keepAwakeLimits.on(desktop), language));
    });
    card.addRow(status);
    addNote(texts::keepAwakeIndication.on(desktop));
}

void GeneralPage::addLoginItem() {
    auto* section = new LoginItemSettingsView(services());
    addWidget(section);
    bind([section](core::AppLanguage) { section->refresh(); });
}

void GeneralPage::addFileManager(Card& card) {
    const auto& fileManager = services().fileManager;
    if (!fileManager.hasEntry || !fileManager.hasEntry()) {
        return;
    }
    addFeature(card, {.symbol = "folder",
                      .title = texts::shareFromFileManager("Nautilus"),
                      .explanation = texts::shareFromFileManagerExplanation,
                      .isOn = [&fileManager] { return fileManager.hasEntry().value_or(false); },
                      .set = [&fileManager](bool on) { fileManager.setEntry(on); }});
}

} // namespace quillane
