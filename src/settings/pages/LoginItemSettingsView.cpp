// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/pages/LoginItemSettingsView.hpp"

#include "core/localization/Texts.hpp"
#include "settings/Card.hpp"
#include "settings/FeatureRow.hpp"
#include "views/Labels.hpp"

#include <QLabel>
#include <QLayout>
#include <QPushButton>

namespace quillane {

namespace texts = core::texts;

LoginItemSettingsView::LoginItemSettingsView(const SettingsServices& services) : SettingsPageView(services) {
    setObjectName(QStringLiteral("loginItem"));
    layout()->setContentsMargins(0, headingSpace, 0, 0);
    auto& loginItem = services.loginItem;
    auto& card = addCard(texts::startup);
    addFeature(card, {.symbol = "power",
                      .title = texts::launchAtLogin,
                      .explanation = texts::launchAtLoginExplanation.on(services.platform.desktop),
                      .isOn = [&loginItem] { return loginItem.isOn(); },
                      .set = [&loginItem](bool on) { loginItem.setEnabled(on); },
                      .isEnabled = [&loginItem] { return loginItem.isInstalled() && !loginItem.isChanging(); }});
    auto& status = addRow(
        card, {}, [&loginItem] { return loginItem.statusText(); },
        [&loginItem]() -> core::LocalizedText {
            return loginItem.isInstalled() ? core::LocalizedText() : core::LocalizedText(texts::moveToApplications);
        });
    status.setObjectName(QStringLiteral("loginItemStatus"));
    auto* settings = button(texts::openLoginItems, [&loginItem] { loginItem.openSettings(); });
    status.setControl(settings);
    bindVisible(settings, [&loginItem] { return loginItem.hasSettings(); });
    auto* error = textLabel("warning");
    error->setContentsMargins(14, 8, 14, 8);
    bindText(error, [&loginItem] { return loginItem.errorMessage().value_or(core::LocalizedText()); });
    bindVisible(error, [&loginItem] { return loginItem.errorMessage().has_value(); });
    card.addRow(error);
}

void LoginItemSettingsView::showEvent(QShowEvent* event) {
    SettingsPageView::showEvent(event);
    services().loginItem.refresh(); // the user may have changed it elsewhere
}

} // namespace quillane
