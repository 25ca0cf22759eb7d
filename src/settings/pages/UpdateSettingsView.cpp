// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/pages/UpdateSettingsView.hpp"

#include "core/localization/DateText.hpp"
#include "core/localization/Texts.hpp"
#include "settings/Card.hpp"
#include "settings/FeatureRow.hpp"

#include <QPushButton>

namespace quillane {

namespace texts = core::texts;

UpdateSettingsView::UpdateSettingsView(const SettingsServices& services) : SettingsPageView(services) {
    auto& updater = services.updater;
    auto& card = addCard(texts::quillaneUpdates);
    auto& version = addRow(
        card, "arrow.down.app", [&updater] { return texts::installedVersion(updater.version()); },
        [&updater]() -> core::LocalizedText {
            switch (updater.means()) {
            case AppUpdater::Means::packageManager:
                return texts::packageManagerUpdates;
            case AppUpdater::Means::none:
                return texts::noUpdateKey;
            case AppUpdater::Means::itself:
                break;
            }
            return {};
        });
    version.setObjectName(QStringLiteral("version"));
    if (updater.updatesItself()) {
        addSwitch();
    }
    addStretch();
}

void UpdateSettingsView::addSwitch() {
    auto& updater = services().updater;
    auto& card = addCard();
    addFeature(card, {.symbol = "clock",
                      .title = texts::checkAutomatically,
                      .explanation = texts::checkAutomaticallyExplanation,
                      .isOn = [&updater] { return updater.checksAutomatically(); },
                      .set = [&updater](bool on) { updater.setChecksAutomatically(on); }});
    auto& last = addRow(card, "arrow.triangle.2.circlepath", [this] { return lastCheck(); });
    last.setObjectName(QStringLiteral("lastCheck"));
    auto* check = button(texts::checkForUpdatesNow, [&updater] { updater.checkNow(); });
    check->setObjectName(QStringLiteral("checkNow"));
    check->setProperty("role", QStringLiteral("main"));
    bind([&updater, check](core::AppLanguage) { check->setEnabled(updater.canCheck()); });
    last.setControl(check);
}

core::LocalizedText UpdateSettingsView::lastCheck() const {
    const auto date = services().updater.lastCheck();
    if (!date) {
        return texts::noUpdateCheckYet;
    }
    return texts::lastChecked(core::dateText(*date, services().preferences.state().language));
}

} // namespace quillane
