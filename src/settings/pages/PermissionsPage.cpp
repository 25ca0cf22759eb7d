// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/pages/PermissionsPage.hpp"

#include "core/localization/Texts.hpp"
#include "settings/Card.hpp"
#include "settings/FeatureRow.hpp"
#include "views/Labels.hpp"
#include "views/Text.hpp"

#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include <string>

namespace quillane {

namespace texts = core::texts;
using core::MacPermission;

PermissionsPage::PermissionsPage(const SettingsServices& services) : SettingsPageView(services) {
    auto& permissions = services.permissions;
    auto* count = scaledLabel(1.15, true);
    count->setContentsMargins(4, 0, 4, 0);
    bindText(count,
             [&permissions] { return texts::permissionsApproved(std::to_string(permissions.granted().size())); });
    addWidget(count);
    addNote(texts::permissionsExplanation);

    auto& card = addCard();
    addPermission(card, MacPermission::inputMonitoring, "keyboard", texts::inputMonitoring,
                  texts::inputMonitoringPurpose);
    addPermission(card, MacPermission::accessibility, "figure.stand", texts::accessibility,
                  texts::accessibilityPurpose);
    addKeyboardCheck(card);

    auto* feedback = textLabel();
    feedback->setObjectName(QStringLiteral("feedback"));
    feedback->setContentsMargins(4, 4, 4, 4);
    bindText(feedback, [&permissions] { return permissions.feedback(); });
    bindVisible(feedback, [&permissions] { return permissions.feedback() != core::LocalizedText(); });
    addWidget(feedback);
    addHelp();
    addStretch();
}

void PermissionsPage::addPermission(Card& card, MacPermission permission, const std::string& symbol,
                                    const core::LocalizedText& title, const core::LocalizedText& purpose) {
    auto& permissions = services().permissions;
    const auto isGranted = [&permissions, permission] { return permissions.granted().contains(permission); };
    auto& row = addRow(
        card, symbol, [title] { return title; }, [purpose] { return purpose; }, isGranted);
    auto* state = textLabel();
    state->setWordWrap(false);
    state->setObjectName(QString::fromStdString(std::string(rawValue(permission))));
    bind([state, isGranted](core::AppLanguage language) {
        const bool granted = isGranted();
        state->setText(rendered(granted ? texts::permissionGranted : texts::permissionMissing, language));
        state->setProperty("role", granted ? QStringLiteral("good") : QStringLiteral("warning"));
        state->style()->unpolish(state); // the role decides the colour
        state->style()->polish(state);
    });
    auto* request = button(texts::requestPermission, [&permissions, permission] { permissions.request(permission); });
    request->setProperty("role", QStringLiteral("main"));
    bind([&permissions, request, isGranted](core::AppLanguage) {
        request->setVisible(!isGranted());
        request->setEnabled(permissions.isInstalled() && !permissions.isRequesting());
    });
    const auto& openSettings = permission == MacPermission::accessibility ? services().model.openAccessibility
                                                                          : services().model.openInputMonitoring;
    auto* settings = button(texts::openSystemSettings.on(services().platform.desktop), [&openSettings] {
        if (openSettings) {
            openSettings();
        }
    });
    bindVisible(settings, [&openSettings] { return openSettings != nullptr; });
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(state, 0, Qt::AlignTrailing);
    layout->addWidget(request, 0, Qt::AlignTrailing);
    layout->addWidget(settings, 0, Qt::AlignTrailing);
    row.setControl(column);
}

void PermissionsPage::addHelp() {
    auto& permissions = services().permissions;
    auto& model = services().model;
    auto& card = addCard();
    auto& relaunch = addRow(
        card, "arrow.triangle.2.circlepath", [] { return texts::relaunchQuillane; },
        [] { return texts::relaunchExplanation; });
    relaunch.setObjectName(QStringLiteral("relaunch"));
    relaunch.setControl(button(texts::relaunchQuillane, [&permissions] { permissions.restart(); }));
    bindVisible(&relaunch, [&model] { return model.needsRelaunch(); });
    auto& path = addRow(
        card, "folder", [] { return texts::notInTheList; },
        [&permissions]() -> core::LocalizedText {
            return permissions.isInstalled() ? texts::notInTheListExplanation : texts::requestsNeedInstallation;
        });
    path.setObjectName(QStringLiteral("path"));
    path.setControl(button(texts::copyAppPath, [&permissions] { permissions.copyPath(); }));
    bindVisible(&path, [&permissions] { return permissions.isGrantedInSettings(); });
    bindVisible(&card, [&permissions, &model] { return permissions.isGrantedInSettings() || model.needsRelaunch(); });
}

} // namespace quillane
