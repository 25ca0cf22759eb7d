// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/SettingsPageView.hpp"

#include "core/localization/Texts.hpp"
#include "settings/Card.hpp"
#include "settings/FeatureRow.hpp"
#include "settings/SwitchButton.hpp"
#include "views/Colors.hpp"
#include "views/Labels.hpp"
#include "views/Text.hpp"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillane {

namespace {

constexpr int sideMargin = 24;
constexpr int cardSpace = 8;

} // namespace

SettingsPageView::SettingsPageView(const SettingsServices& services)
    : services_(services), column_(new QVBoxLayout(this)) {
    setObjectName(QStringLiteral("page"));
    column_->setContentsMargins(sideMargin, 4, sideMargin, sideMargin);
    column_->setSpacing(6);
}

void SettingsPageView::refresh() {
    const auto language = services_.preferences.state().language;
    for (const auto& binding : bindings_) {
        binding(language);
    }
}

Card& SettingsPageView::addCard(const core::LocalizedText& heading) {
    auto* label = scaledLabel(1, true);
    label->setContentsMargins(4, column_->count() == 0 ? 0 : headingSpace, 4, 0);
    bindText(label, [heading] { return heading; });
    column_->addWidget(label);
    auto& card = appendCard();
    bind([&card, heading](core::AppLanguage language) { card.setAccessibleName(rendered(heading, language)); });
    return card;
}

Card& SettingsPageView::addCard() {
    if (column_->count() > 0) {
        column_->addSpacing(cardSpace);
    }
    return appendCard();
}

Card& SettingsPageView::appendCard() {
    auto* card = new Card;
    column_->addWidget(card);
    return *card;
}

QLabel& SettingsPageView::addNote(const core::LocalizedText& text) {
    auto* label = scaledLabel(0.9, false, "secondary");
    label->setContentsMargins(4, 0, 4, 0);
    bindText(label, [text] { return text; });
    column_->addWidget(label);
    return *label;
}

FeatureRow& SettingsPageView::addFeature(Card& card, Feature feature) {
    auto* row = new FeatureRow;
    auto& control = row->addSwitch();
    // Assistive technologies toggle without a click.
    connect(&control, &QAbstractButton::toggled, this, [this, set = feature.set](bool on) {
        set(on);
        refresh(); // a control whose change is refused shows its old value again
    });
    bind([this, row, &control, feature = std::move(feature)](core::AppLanguage language) {
        const bool on = feature.isOn();
        row->setTitle(rendered(feature.title, language));
        row->setExplanation(rendered(feature.explanation, language));
        row->setSymbol(tileSymbol(feature.symbol, on), on);
        const QSignalBlocker quiet(control);
        control.setChecked(on);
        control.setEnabled(!feature.isEnabled || feature.isEnabled());
    });
    card.addRow(row);
    return *row;
}

FeatureRow& SettingsPageView::addRow(Card& card, const std::string& symbol, const Text& title, const Text& explanation,
                                     std::function<bool()> highlighted) {
    auto* row = new FeatureRow;
    bind([=, this](core::AppLanguage language) {
        const bool highlight = highlighted && highlighted();
        row->setTitle(rendered(title(), language));
        row->setExplanation(explanation ? rendered(explanation(), language) : QString());
        row->setSymbol(tileSymbol(symbol, highlight), highlight);
    });
    card.addRow(row);
    return *row;
}

FeatureRow& SettingsPageView::addKeyboardCheck(Card& card) {
    namespace texts = core::texts;
    auto& engine = addRow(
        card, "checkmark.circle", [] { return texts::keyboardEngine; },
        [&model = services_.model]() -> core::LocalizedText {
            const auto& runtime = model.runtime();
            if (!runtime.monitorRunning) {
                return model.options().shouldMonitor() && runtime.accessibilityGranted ? texts::engineNotRunning
                                                                                       : texts::waitingForKeyboardCheck;
            }
            return runtime.keyboardEventsObserved ? texts::keyboardInputReceived : texts::engineRunningPressShift;
        },
        [&model = services_.model] {
            return model.runtime().monitorRunning && model.runtime().keyboardEventsObserved;
        });
    engine.setObjectName(QStringLiteral("engine"));
    return engine;
}

QPushButton* SettingsPageView::button(const core::LocalizedText& text, std::function<void()> action) {
    auto* made = new QPushButton;
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, [this, action = std::move(action)] {
        action();
        refresh();
    });
    bind([made, text](core::AppLanguage language) { made->setText(rendered(text, language)); });
    return made;
}

void SettingsPageView::addWidget(QWidget* widget) {
    column_->addWidget(widget);
}

void SettingsPageView::addStretch() {
    column_->addStretch(1);
}

void SettingsPageView::bindText(QLabel* label, Text text) {
    bind([label, text = std::move(text)](core::AppLanguage language) { showText(*label, rendered(text(), language)); });
}

void SettingsPageView::bindVisible(QWidget* widget, std::function<bool()> condition) {
    bind([widget, condition = std::move(condition)](core::AppLanguage) { widget->setVisible(condition()); });
}

QIcon SettingsPageView::tileSymbol(const std::string& name, bool highlighted) const {
    const auto appearance = currentAppearance();
    const auto color =
        highlighted ? core::brandPalette::shades(appearance).onAmber : core::brandPalette::primary(appearance);
    return services_.symbol ? services_.symbol(name, qColor(color)) : QIcon();
}

} // namespace quillane
