// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/TestingPage.hpp"

#include "core/localization/Texts.hpp"
#include "settings/Card.hpp"
#include "settings/FeatureRow.hpp"

#include <QLabel>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextEdit>
#include <QVBoxLayout>

namespace quillane {

namespace texts = core::texts;
using core::MacPermission;

TestingPage::TestingPage(const SettingsServices& services) : SettingsPageView(services), box_(new QTextEdit) {
    addCheck();
    auto& card = addCard(texts::tryDirectionShortcuts);
    auto* column = new QVBoxLayout;
    column->setSpacing(8);
    box_->setObjectName(QStringLiteral("box"));
    box_->setAcceptRichText(false);
    box_->setTabChangesFocus(true);
    box_->setMinimumHeight(box_->fontMetrics().height() * 4);
    box_->setMaximumHeight(box_->fontMetrics().height() * 8);
    bind([this](core::AppLanguage language) {
        box_->setPlaceholderText(rendered(texts::typeHere, language));
        box_->setAccessibleName(rendered(texts::tryDirectionShortcuts, language));
    });
    auto* explanation = scaledLabel(0.9, false, "secondary");
    bindText(explanation, [] { return texts::directionChords; });
    column->addWidget(box_);
    column->addWidget(explanation);
    card.addRow(cardRow(column));
    addStretch();
}

void TestingPage::addCheck() {
    auto& model = services().model;
    auto& permissions = services().permissions;
    auto& card = addCard(texts::keyboardCheck);
    const auto permission = [&](MacPermission kind, const std::string& symbol, const core::LocalizedText& title) {
        const auto granted = [&permissions, kind] { return permissions.granted().contains(kind); };
        addRow(
            card, symbol, [title] { return title; },
            [granted]() -> core::LocalizedText {
                return granted() ? texts::permissionGranted : texts::permissionMissing;
            },
            granted);
    };
    permission(MacPermission::inputMonitoring, "keyboard", texts::inputMonitoring);
    permission(MacPermission::accessibility, "figure.stand", texts::accessibility);
    auto& engine = addRow(
        card, "checkmark.circle", [] { return texts::keyboardEngine; },
        [&model]() -> core::LocalizedText {
            const auto& runtime = model.runtime();
            if (!runtime.monitorRunning) {
                return model.options().shouldMonitor() && model.runtime().accessibilityGranted
                           ? texts::engineNotRunning
                           : texts::waitingForKeyboardCheck;
            }
            return runtime.keyboardEventsObserved ? texts::keyboardInputReceived : texts::engineRunningPressShift;
        },
        [&model] { return model.runtime().monitorRunning && model.runtime().keyboardEventsObserved; });
    engine.setObjectName(QStringLiteral("engine"));
    addRow(
        card, "globe", [] { return texts::currentInputSource; },
        [&model]() -> core::LocalizedText {
            const auto& name = model.runtime().inputName;
            return name.empty() ? core::LocalizedText(texts::unknownInputSource) : core::LocalizedText(name);
        });
    addRow(
        card, "clock", [] { return texts::lastAction; },
        [&model]() -> core::LocalizedText {
            return model.lastAction() == core::LocalizedText() ? core::LocalizedText(texts::noActionYet)
                                                               : model.lastAction();
        });
}

bool TestingPage::apply(core::WritingDirection direction) {
    if (!box_->hasFocus()) {
        return false;
    }
    auto cursor = box_->textCursor();
    QTextBlockFormat format;
    format.setLayoutDirection(direction == core::WritingDirection::rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    cursor.mergeBlockFormat(format);
    return true;
}

} // namespace quillane
