// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/SettingsHeader.hpp"

#include "core/localization/Texts.hpp"
#include "settings/AccessibleSettings.hpp"
#include "settings/FeatureRow.hpp"
#include "views/Colors.hpp"
#include "views/Labels.hpp"
#include "views/Text.hpp"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace quillane {

namespace {

constexpr int iconSide = 48;

/// The name in its colours; it contains only the name, so it may be markup.
QString wordmarkMarkup() {
    QString markup;
    for (const auto& run : core::brandPalette::wordmark(currentAppearance(), false)) {
        markup +=
            QStringLiteral("<span style=\"color:%1\">%2</span>")
                .arg(qColor(run.color).name(), QLatin1String(run.text.data(), static_cast<qsizetype>(run.text.size())));
    }
    return markup;
}

} // namespace

SettingsHeader::SettingsHeader(const SettingsServices& services)
    : services_(services),
      icon_(new QLabel),
      wordmark_(scaledLabel(1.6, true)),
      status_(textLabel("secondary")),
      noStatusItem_(textLabel("warning")),
      language_(new QComboBox) {
    wordmark_->setTextFormat(Qt::RichText);
    wordmark_->setWordWrap(false);
    wordmark_->setObjectName(QStringLiteral("wordmark"));
    status_->setObjectName(QStringLiteral("status"));
    noStatusItem_->setObjectName(QStringLiteral("noStatusItem"));
    language_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    language_->setObjectName(QStringLiteral("language"));
    icon_->setFixedSize(iconSide, iconSide);
    for (const auto language : core::allLanguages) {
        const auto name = core::nativeName(language);
        language_->addItem(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    }
    connect(language_, &QComboBox::activated, this, [this](int index) {
        services_.preferences.choose(core::allLanguages.at(static_cast<std::size_t>(index)));
    });

    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addStretch();
    words->addWidget(wordmark_, 0, Qt::AlignLeading); // Latin letters in every language
    words->addWidget(status_);
    words->addWidget(noStatusItem_);
    words->addStretch();
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(14);
    row->addWidget(icon_);
    row->addLayout(words, 1);
    row->addWidget(language_, 0, Qt::AlignVCenter);
}

void SettingsHeader::refresh() {
    const auto language = services_.preferences.state().language;
    const auto name = rendered(core::texts::interfaceLanguage, language);
    icon_->setVisible(!services_.applicationIcon.isNull());
    icon_->setPixmap(services_.applicationIcon.pixmap(QSize(iconSide, iconSide)));
    wordmark_->setText(wordmarkMarkup());
    status_->setText(rendered(services_.model.runtime().runtimeStatus, language));
    noStatusItem_->setText(rendered(core::texts::noSystemTray, language));
    noStatusItem_->setVisible(!services_.model.runtime().statusItemShown);
    nameList(*language_, name);
    language_->setToolTip(name);
    language_->setCurrentIndex(static_cast<int>(language));
}

} // namespace quillane
