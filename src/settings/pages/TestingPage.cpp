// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/pages/TestingPage.hpp"

#include "core/direction/DirectionTarget.hpp"
#include "core/localization/Texts.hpp"
#include "settings/AccessibleSettings.hpp"
#include "settings/Card.hpp"
#include "settings/FeatureRow.hpp"
#include "views/Labels.hpp"
#include "views/Text.hpp"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextOption>
#include <QVBoxLayout>

#include <algorithm>

namespace quillane {

namespace texts = core::texts;
using core::MacPermission;

TestingPage::TestingPage(const SettingsServices& services) : SettingsPageView(services), box_(new QTextEdit) {
    addCheck();
    addTryOut();
    addTarget();
    addStretch();
}

void TestingPage::addTryOut() {
    auto& model = services().model;
    auto& card = addCard(texts::tryDirectionShortcuts);
    auto* column = new QVBoxLayout;
    column->setSpacing(8);
    box_->setObjectName(QStringLiteral("box"));
    box_->setAcceptRichText(false);
    box_->setTabChangesFocus(true);
    box_->setMinimumHeight(box_->fontMetrics().height() * 4);
    box_->setMaximumHeight(box_->fontMetrics().height() * 8);
    connect(box_, &QTextEdit::textChanged, this, [this] { placeCaret(); });
    bind([this, &model](core::AppLanguage language) {
        placeCaret();
        box_->setPlaceholderText(rendered(texts::typeHere, language));
        box_->setAccessibleName(rendered(texts::tryDirectionShortcuts, language));
        if (const auto text = QString::fromStdString(model.testText()); text != box_->toPlainText()) {
            box_->setPlainText(text);
        }
    });
    connect(box_, &QTextEdit::textChanged, this,
            [this, &model] { model.setTestText(box_->toPlainText().toStdString()); });
    auto* explanation = scaledLabel(0.9, false, "secondary");
    bindText(explanation, [desktop = services().platform.desktop] { return texts::directionChords.on(desktop); });
    column->addWidget(box_);
    column->addWidget(explanation);
    card.addRow(cardRow(column));
}

void TestingPage::addTarget() {
    auto& model = services().model;
    auto& card = addCard(texts::testInApplication);
    auto& row = addRow(
        card, "paragraphsign", [] { return texts::applicationToTest; },
        [&model]() -> core::LocalizedText {
            return model.canTestDirection() ? texts::openSelectedApp : texts::enableDirectionFeature;
        });
    auto* target = new QComboBox;
    target->setObjectName(QStringLiteral("target"));
    target->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    const auto targets = core::directionTestTargets(services().platform.desktop);
    for (const auto& [bundleID, name] : targets) {
        target->addItem(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    }
    target->setMaxVisibleItems(target->count());
    target->setPlaceholderText(QStringLiteral("—"));
    connect(target, &QComboBox::activated, this, [&model, targets](int index) {
        model.setTestTargetID(std::string(targets.at(static_cast<std::size_t>(index)).bundleID));
    });
    bind([&model, target, targets](core::AppLanguage language) {
        nameList(*target, rendered(texts::applicationToTest, language));
        const auto chosen = std::ranges::find(targets, model.testTargetID(), &core::DirectionTestTarget::bundleID);
        target->setCurrentIndex(chosen != targets.end() ? static_cast<int>(chosen - targets.begin()) : -1);
    });
    row.setControl(target);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    const auto add = [&](const char* name, const core::LocalizedText& text, core::WritingDirection direction) {
        auto* made = button(text, [&model, direction] {
            if (model.testDirection) {
                model.testDirection(direction);
            }
        });
        made->setObjectName(QLatin1String(name));
        bind([&model, made](core::AppLanguage) {
            made->setEnabled(model.canTestDirection() && core::hasDirectionCommands(model.testTargetID()));
        });
        buttons->addWidget(made);
    };
    add("testRightToLeft", texts::rightToLeft, core::WritingDirection::rightToLeft);
    add("testLeftToRight", texts::leftToRight, core::WritingDirection::leftToRight);
    card.addRow(cardRow(buttons));
}

void TestingPage::addInputSource(Card& card) {
    auto& model = services().model;
    auto& row = addRow(
        card, "globe", [] { return texts::currentInputSource; },
        [&model]() -> core::LocalizedText {
            const auto& runtime = model.runtime();
            if (runtime.inputName.empty()) {
                return texts::unknownInputSource;
            }
            return runtime.inputIsRTL ? texts::rightToLeftInputSource(runtime.inputName)
                                      : texts::leftToRightInputSource(runtime.inputName);
        });
    row.setObjectName(QStringLiteral("inputSource"));
    auto* column = new QVBoxLayout;
    const auto add = [&](const core::LocalizedText& text, const std::function<void()>& handler) {
        auto* made = button(text, [&handler] {
            if (handler) {
                handler();
            }
        });
        bindVisible(made, [&handler] { return handler != nullptr; });
        column->addWidget(made);
    };
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    add(texts::nextInputSource, model.switchLanguage);
    add(texts::openKeyboardSettings, model.openKeyboard);
    auto* buttons = new QWidget;
    buttons->setLayout(column);
    row.setControl(buttons);
}

void TestingPage::addCheck() {
    auto& model = services().model;
    auto& permissions = services().permissions;
    auto& card = addCard(texts::keyboardCheck);
    addRow(
        card, "checkmark.circle",
        [&model]() -> core::LocalizedText { return model.isReady() ? texts::readyToUse : texts::notReady; },
        [&model, &permissions]() -> core::LocalizedText {
            const auto granted = permissions.granted().size();
            const bool isMissing = granted < core::allPermissions.size();
            return isMissing && !model.isReady() && !model.options().paused
                       ? texts::permissionsApproved(std::to_string(granted))
                       : model.runtime().runtimeStatus;
        },
        [&model] { return model.isReady(); })
        .setObjectName(QStringLiteral("readiness"));
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
    addKeyboardCheck(card);
    addInputSource(card);
    auto& last = addRow(
        card, "clock", [] { return texts::lastAction; },
        [&model]() -> core::LocalizedText {
            return model.lastAction() == core::LocalizedText() ? core::LocalizedText(texts::noActionYet)
                                                               : model.lastAction();
        });
    auto* offer = button({}, [&model] {
        if (const auto offered = model.offer()) { // a copy: the action may produce the next outcome
            offered->action();
        }
    });
    offer->setObjectName(QStringLiteral("offer"));
    bind([&model, offer](core::AppLanguage language) {
        offer->setVisible(model.offer().has_value());
        offer->setText(model.offer() ? rendered(model.offer()->title, language) : QString());
    });
    last.setControl(offer);
}

void TestingPage::placeCaret() {
    auto option = box_->document()->defaultTextOption();
    const auto direction = box_->document()->isEmpty() ? box_->layoutDirection() : Qt::LayoutDirectionAuto;
    if (option.textDirection() != direction) {
        option.setTextDirection(direction);
        box_->document()->setDefaultTextOption(option);
    }
}

bool TestingPage::isTextBoxFocused() const {
    return box_->hasFocus();
}

void TestingPage::apply(core::WritingDirection direction) {
    auto cursor = box_->textCursor();
    QTextBlockFormat format;
    format.setLayoutDirection(direction == core::WritingDirection::rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    cursor.mergeBlockFormat(format);
}

} // namespace quillane
