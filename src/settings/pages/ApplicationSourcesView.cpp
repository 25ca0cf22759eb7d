// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/pages/ApplicationSourcesView.hpp"

#include "core/keyboard/RTLInputLanguage.hpp"
#include "core/localization/Texts.hpp"
#include "settings/AccessibleSettings.hpp"
#include "views/Labels.hpp"
#include "views/Text.hpp"
#include "views/ToolTip.hpp"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace quillane {

namespace texts = core::texts;

namespace {

/// What is offered first: the source of a terminal is usually the one that types Latin letters.
const InputSource& firstChoice(const std::vector<InputSource>& sources) {
    const auto found = std::ranges::find_if_not(
        sources, [](const InputSource& source) { return core::rtlInputLanguage::isRightToLeft(source.languages); });
    return found != sources.end() ? *found : sources.front();
}

} // namespace

ApplicationSourcesView::ApplicationSourcesView(const SettingsServices& services)
    : services_(services),
      applications_(
          new ApplicationChooser([&catalog = *services.platform.applicationCatalog](
                                     ApplicationCatalog::Handler handler) { catalog.read(std::move(handler)); },
                                 *this)),
      list_(new QVBoxLayout),
      explanation_(scaledLabel(0.9, false, "secondary")),
      add_(new QPushButton) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(14, 10, 14, 10);
    column->setSpacing(8);
    list_->setSpacing(6);
    column->addLayout(list_);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(explanation_, 1);
    bottom->addWidget(add_);
    column->addLayout(bottom);
    add_->setObjectName(QStringLiteral("addFixedSource"));
    add_->setAutoDefault(false);
    connect(add_, &QPushButton::clicked, this, [this] { applications_->find([this] { choose(); }); });
    applications_->find([this] { refresh(); }); // for the names of those on the list
}

core::ApplicationSourceOptions ApplicationSourcesView::options() const {
    return core::ApplicationSourceOptions::load(*services_.platform.userDefaults);
}

void ApplicationSourcesView::change(const std::function<void(core::ApplicationSourceOptions&)>& change) {
    auto changed = options();
    change(changed);
    changed.save(*services_.platform.userDefaults);
    refresh();
}

void ApplicationSourcesView::choose() {
    const auto sources = services_.platform.inputSources->enabled();
    if (!sources || sources->empty()) {
        return;
    }
    std::vector<std::string> listed;
    for (const auto& [application, source] : options().fixed) {
        listed.push_back(application);
    }
    applications_->offer(*add_, listed, [this, first = firstChoice(*sources).id](const std::string& application) {
        change([&](core::ApplicationSourceOptions& changed) { changed.fixed[application] = first; });
    });
}

void ApplicationSourcesView::refresh() {
    const auto language = services_.preferences.state().language;
    const auto sources = services_.platform.inputSources->enabled().value_or(std::vector<InputSource>());
    const auto fixed = options().fixed;
    explanation_->setText(QString()); // its alignment follows the layout
    showText(*explanation_, rendered(texts::alwaysThisSource, language));
    add_->setText(rendered(texts::addApplication, language));
    QStringList wanted{QString::fromStdString(std::string(core::languageID(language)))};
    for (const auto& source : sources) {
        wanted << QString::fromStdString(source.id) << QString::fromStdString(source.localizedName);
    }
    for (const auto& [application, source] : fixed) {
        wanted << applications_->nameOf(application) << QString::fromStdString(application)
               << QString::fromStdString(source);
    }
    if (wanted == shown_) {
        return;
    }
    shown_ = wanted;
    while (auto* item = list_->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    for (const auto& [application, source] : fixed) {
        addEntry(application, source, sources, language);
    }
    if (fixed.empty()) {
        auto* nothing = textLabel("secondary");
        list_->addWidget(nothing);
        showText(*nothing, rendered(texts::noApplications, language));
    }
}

void ApplicationSourcesView::addEntry(const std::string& application, const std::string& source,
                                      const std::vector<InputSource>& sources, core::AppLanguage language) {
    const auto name = applications_->nameOf(application);
    auto* entry = new QWidget;
    auto* row = new QHBoxLayout(entry);
    row->setContentsMargins(0, 0, 0, 0);
    auto* label = textLabel();
    auto* choice = new QComboBox;
    auto* remove = new QPushButton(QStringLiteral("−"));
    row->addWidget(label, 1);
    row->addWidget(choice);
    row->addWidget(remove);
    list_->addWidget(entry);
    showText(*label, name); // once the direction of the page is known
    label->setToolTip(plainToolTip(QString::fromStdString(application)));
    choice->setObjectName(QStringLiteral("fixedSource"));
    choice->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    nameList(*choice, rendered(texts::sourceInApplication(name.toStdString()), language));
    for (const auto& one : sources) {
        choice->addItem(QString::fromStdString(one.localizedName), QString::fromStdString(one.id));
    }
    choice->setCurrentIndex(choice->findData(QString::fromStdString(source))); // none for one that is not enabled
    connect(choice, &QComboBox::activated, this, [this, choice, application](int index) {
        const auto chosen = choice->itemData(index).toString().toStdString();
        change([&](core::ApplicationSourceOptions& changed) { changed.fixed[application] = chosen; });
    });
    remove->setObjectName(QStringLiteral("removeFixedSource"));
    remove->setAccessibleName(rendered(texts::removeApplication(name.toStdString()), language));
    connect(remove, &QPushButton::clicked, this, [this, application] {
        change([&](core::ApplicationSourceOptions& changed) { changed.fixed.erase(application); });
    });
}

} // namespace quillane
