// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/pages/ClipboardPage.hpp"

#include "core/clipboard/SetAsideHistories.hpp"
#include "core/localization/DateText.hpp"
#include "core/localization/NumberText.hpp"
#include "core/localization/Texts.hpp"
#include "settings/AccessibleSettings.hpp"
#include "settings/Card.hpp"
#include "settings/FeatureRow.hpp"
#include "settings/SwitchButton.hpp"
#include "views/Labels.hpp"
#include "views/MessageBox.hpp"
#include "views/Text.hpp"
#include "views/ToolTip.hpp"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStringList>

#include <algorithm>

namespace quillane {

namespace texts = core::texts;

ClipboardPage::ClipboardPage(const SettingsServices& services)
    : SettingsPageView(services), applications_(new ApplicationChooser(services.clipboard.findApplications, *this)) {
    addSwitch();
    addKinds();
    addStorage();
    addPanel();
    addExclusions();
    addClearing();
    addStretch();
    applications_->find([this] { refresh(); }); // for the names of excluded ones
}

ClipboardPage::Options ClipboardPage::options() const {
    const auto& read = services().clipboard.options;
    return read ? read() : Options{};
}

void ClipboardPage::change(const std::function<void(Options&)>& change) {
    auto changed = options();
    change(changed);
    if (services().clipboard.setOptions) {
        services().clipboard.setOptions(changed);
    }
    refresh();
}

SettingsPageView::Feature ClipboardPage::optionFeature(const char* symbol, const core::LocalizedText& title,
                                                       const core::LocalizedText& explanation, bool Options::*option) {
    return {.symbol = symbol,
            .title = title,
            .explanation = explanation,
            .isOn = [this, option] { return options().*option; },
            .set = [this, option](bool on) { change([&](Options& changed) { changed.*option = on; }); }};
}

void ClipboardPage::addSwitch() {
    auto& card = addCard();
    addFeature(card, optionFeature("clock.arrow.circlepath", texts::clipboardHistory,
                                   texts::clipboardHistoryExplanation, &Options::enabled));
    const auto taken = [this] {
        const auto& isTaken = services().clipboard.isShortcutTaken;
        return isTaken && isTaken();
    };
    auto& status = addRow(card, "clock", [this] {
        const auto& read = services().clipboard.status;
        return read ? read() : core::LocalizedText();
    });
    status.setObjectName(QStringLiteral("historyStatus"));
    bindVisible(&status, [this, taken] { return services().clipboard.status && !taken(); });
    const auto is = [](const std::function<bool()>& fact) { return fact && fact(); };
    auto& unsaved = addRow(
        card, "exclamationmark.circle",
        [this, is]() -> core::LocalizedText {
            return is(services().clipboard.isUsedElsewhere) ? texts::savedHistoryInUse : texts::cannotSaveHistory;
        },
        [this, is] {
            return is(services().clipboard.isUnread) ? core::LocalizedText(texts::savedHistoryUnread)
                                                     : core::LocalizedText();
        });
    unsaved.setObjectName(QStringLiteral("unsavedHistory"));
    bindVisible(&unsaved, [this] {
        const auto& hasError = services().clipboard.hasStorageError;
        return hasError && hasError();
    });
    auto& row = addRow(card, "exclamationmark.circle",
                       [desktop = services().platform.desktop] { return texts::historyShortcutInUse.on(desktop); });
    row.setObjectName(QStringLiteral("shortcutTaken"));
    row.setControl(button(texts::retryShortcutRegistration, [this] {
        if (services().clipboard.retryShortcut) {
            services().clipboard.retryShortcut();
        }
    }));
    bindVisible(&row, taken);
    addAccess(card);
    addSetAside(card);
}

void ClipboardPage::addAccess(Card& card) {
    const auto access = [this] {
        const auto& read = services().clipboard.access;
        return read ? read() : PasteboardAccess::allowed;
    };
    auto& row = addRow(card, "exclamationmark.circle", [access]() -> core::LocalizedText {
        return access() == PasteboardAccess::denied ? texts::pasteboardDenied : texts::pasteboardAsks;
    });
    row.setObjectName(QStringLiteral("pasteboardAccess"));
    row.setControl(button(texts::openSystemSettings.on(services().platform.desktop), [this] {
        if (services().clipboard.openAccessSettings) {
            services().clipboard.openAccessSettings();
        }
    }));
    bindVisible(&row, [access] { return access() != PasteboardAccess::allowed; });
}

/// A row for each history that may have been set aside, and one for the result of a recovery.
void ClipboardPage::addSetAside(Card& card) {
    const auto at = [this](std::size_t place) {
        const auto& list = services().clipboard.setAside;
        const auto all = list ? list() : std::vector<core::SetAsideHistory>();
        return place < all.size() ? std::optional(all[place]) : std::nullopt;
    };
    for (std::size_t place = 0; place < core::setAsideHistories::maximumCount; ++place) {
        auto* row = new FeatureRow;
        row->setObjectName(QStringLiteral("setAside"));
        auto* recover = button(texts::recoverHistory, [this, at, place] {
            if (const auto history = at(place)) {
                askToRecover(*history);
            }
        });
        recover->setObjectName(QStringLiteral("recover"));
        row->setControl(recover);
        bind([this, at, place, row, recover](core::AppLanguage language) {
            const auto history = at(place);
            const auto& hasError = services().clipboard.hasStorageError;
            recover->setEnabled(!hasError || !hasError()); // it could not be saved
            row->setVisible(history.has_value());
            if (history) {
                row->setTitle(rendered(texts::historySetAsideOn(core::dateText(history->date, language)), language));
                row->setSymbol(tileSymbol("exclamationmark.circle", false), false);
            }
        });
        card.addRow(row);
    }
    const auto recovery = [this] {
        const auto& last = services().clipboard.lastRecovery;
        return last ? last() : std::nullopt;
    };
    auto* row = new FeatureRow;
    row->setObjectName(QStringLiteral("recovered"));
    bind([this, recovery, row](core::AppLanguage language) {
        const auto last = recovery();
        row->setVisible(last.has_value());
        if (last) {
            const auto text = [&](std::size_t value) {
                return core::numberText(static_cast<std::int64_t>(value), language);
            };
            row->setTitle(rendered(texts::itemsRecovered(text(last->recovered), text(last->total)), language));
            row->setSymbol(tileSymbol("clock.arrow.circlepath", false), false);
        }
    });
    card.addRow(row);
}

void ClipboardPage::addKinds() {
    auto& card = addCard(texts::whatToKeep);
    addFeature(card, optionFeature("doc.text", texts::keepText, {}, &Options::saveText));
    addFeature(card, optionFeature("photo", texts::keepImages, {}, &Options::saveImages));
    addFeature(card, optionFeature("folder", texts::keepFiles, texts::filesAreReferences, &Options::saveFiles));
}

void ClipboardPage::addNumber(Card& card, NumberText text, std::int64_t Options::*option, NumberStepper::Range range) {
    auto* row = new FeatureRow;
    auto* stepper = new NumberStepper(
        range, [this, option](std::int64_t value) { change([&](Options& changed) { changed.*option = value; }); });
    row->setControl(stepper);
    bind([=, this, text = std::move(text)](core::AppLanguage language) {
        const auto value = options().*option;
        const auto words = text(core::numberText(value, language));
        row->setTitle(rendered(words, language));
        stepper->show(value, words, language);
    });
    card.addRow(row);
}

void ClipboardPage::addStorage() {
    auto& card = addCard(texts::storage);
    addFeature(card,
               optionFeature("lock", texts::keepHistoryBetweenLaunches, texts::forgettingNote, &Options::persist));
    addNumber(card, [](std::string value) { return texts::historyLimit(std::move(value)); }, &Options::limit,
              {10, 1000, 10});
    addNumber(card, [](std::string value) { return texts::storageLimit(std::move(value)); }, &Options::storageMB,
              {25, 1000, 25});
    addNote(texts::keepHistoryExplanation.on(services().platform.desktop));
    addNote(texts::limitsNote);
}

void ClipboardPage::addPanel() {
    auto& card = addCard(texts::historyPanel);
    auto& row = addRow(card, {}, [] { return texts::openPanelAt; });
    auto* place = new QComboBox;
    place->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    place->setObjectName(QStringLiteral("panelPlace"));
    place->addItems({QString(), QString()});
    connect(place, &QComboBox::activated, this,
            [this](int index) { change([&](Options& changed) { changed.popupAtCursor = index == 0; }); });
    row.setControl(place);
    bind([this, place](core::AppLanguage language) {
        nameList(*place, rendered(texts::openPanelAt, language));
        place->setItemText(0, rendered(texts::mousePointer, language));
        place->setItemText(1, rendered(texts::centerOfScreen, language));
        place->setCurrentIndex(options().popupAtCursor ? 0 : 1);
    });
    addFeature(card, optionFeature("pin", texts::showPinsAtTop, {}, &Options::pinsOnTop));
    addFeature(card, optionFeature("arrow.up.arrow.down", texts::sortByLastCopy, {}, &Options::sortByLastCopy));
    addNumber(card, [](std::string value) { return texts::imageHeight(std::move(value)); }, &Options::imageHeight,
              {30, 120, 10});
    addNumber(card, [](std::string value) { return texts::previewDelay(std::move(value)); }, &Options::previewDelay,
              {200, 3000, 100});
}

void ClipboardPage::addExclusions() {
    auto& card = addCard(texts::excludedApplications);
    auto* list = new QVBoxLayout;
    list->setSpacing(6);
    bind([this, list, shown = QStringList{QString()}](core::AppLanguage language) mutable {
        const auto ignored = options().ignoredApps;
        QStringList wanted{rendered(texts::noExcludedApplications, language)};
        for (const auto& bundleID : ignored) {
            wanted << applications_->nameOf(bundleID) << QString::fromStdString(bundleID);
        }
        if (wanted == shown) {
            return;
        }
        shown = wanted;
        while (auto* item = list->takeAt(0)) {
            item->widget()->hide();
            item->widget()->deleteLater();
            delete item;
        }
        for (const auto& bundleID : ignored) {
            const auto name = applications_->nameOf(bundleID);
            auto* entry = new QWidget;
            auto* row = new QHBoxLayout(entry);
            row->setContentsMargins(0, 0, 0, 0);
            auto* label = textLabel();
            auto* remove = new QPushButton(QStringLiteral("−"));
            row->addWidget(label, 1);
            row->addWidget(remove);
            list->addWidget(entry);
            showText(*label, name); // once the direction of the page is known
            label->setToolTip(plainToolTip(QString::fromStdString(bundleID)));
            remove->setObjectName(QStringLiteral("remove"));
            remove->setAccessibleName(rendered(texts::removeApplication(name.toStdString()), language));
            connect(remove, &QPushButton::clicked, this,
                    [this, bundleID] { change([&](Options& changed) { std::erase(changed.ignoredApps, bundleID); }); });
        }
        if (ignored.empty()) {
            auto* nothing = textLabel("secondary");
            nothing->setText(rendered(texts::noExcludedApplications, language));
            list->addWidget(nothing);
        }
    });
    card.addRow(cardRow(list));
    auto* bottom = new QHBoxLayout;
    auto* explanation = scaledLabel(0.9, false, "secondary");
    bindText(explanation, [] { return texts::excludedApplicationsExplanation; });
    auto* add = button(texts::addApplication, [] {});
    add->setObjectName(QStringLiteral("addApplication"));
    connect(add, &QPushButton::clicked, this, [this, add] {
        applications_->find([this, add] {
            refresh();
            applications_->offer(*add, options().ignoredApps, [this](const std::string& bundleID) {
                change([&](Options& changed) { changed.ignoredApps.push_back(bundleID); });
            });
        });
    });
    bindVisible(add, [this] { return applications_->isAvailable(); });
    bottom->addWidget(explanation, 1);
    bottom->addWidget(add);
    card.addRow(cardRow(bottom));
}

void ClipboardPage::addClearing() {
    using Clearing = core::ClipboardHistory::Clearing;
    auto& card = addCard();
    auto* row = new QHBoxLayout;
    auto* clear = button(texts::clearHistoryCommand, [this] { askToClear(Clearing::includePins); });
    clear->setObjectName(QStringLiteral("clear"));
    auto* keepPins = button(texts::clearUnpinnedCommand, [this] { askToClear(Clearing::keepPins); });
    keepPins->setObjectName(QStringLiteral("clearUnpinned"));
    row->addWidget(clear);
    row->addWidget(keepPins);
    row->addStretch(1);
    card.addRow(cardRow(row));
    bindVisible(&card, [this] { return services().clipboard.clear != nullptr; });
}

void ClipboardPage::askToClear(core::ClipboardHistory::Clearing clearing) {
    const bool includesPins = clearing == core::ClipboardHistory::Clearing::includePins;
    ask(includesPins ? core::LocalizedText(texts::clearHistoryQuestion) : texts::clearUnpinnedQuestion,
        texts::clearHistoryNote,
        {{texts::clearHistoryConfirm, true, [this, clearing] { services().clipboard.clear(clearing); }}});
}

void ClipboardPage::askToRecover(const core::SetAsideHistory& history) {
    ask(texts::recoverHistoryQuestion, texts::recoverHistoryNote,
        {{texts::recoverHistoryConfirm, false, [this, history] { services().clipboard.recover(history); }},
         {texts::clearHistoryConfirm, true, [this, history] { services().clipboard.forget(history); }}});
}

void ClipboardPage::ask(const core::LocalizedText& question, const core::LocalizedText& note,
                        const std::vector<Answer>& answers) {
    auto* box = new MessageBox(services().preferences, texts::clipboardHistory, question, window());
    box->setIcon(QMessageBox::Warning);
    box->setNote(note);
    for (const auto& answer : answers) {
        const auto role = answer.destroys ? QMessageBox::DestructiveRole : QMessageBox::AcceptRole;
        connect(&box->addAnswer(answer.text, role), &QAbstractButton::clicked, this,
                [action = answer.action] { action(); });
    }
    auto& cancel = box->addAnswer(texts::cancel, QMessageBox::RejectRole);
    box->setDefaultButton(&cancel);
    box->setEscapeButton(&cancel);
    box->open();
}

} // namespace quillane
