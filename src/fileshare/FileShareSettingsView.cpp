// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "fileshare/FileShareSettingsView.hpp"

#include "core/localization/Texts.hpp"
#include "views/Labels.hpp"
#include "views/Text.hpp"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillane {

namespace texts = core::texts;

FileShareSettingsView::FileShareSettingsView(core::UserDefaults& defaults, core::AppPreferences& preferences,
                                             core::Desktop desktop)
    : defaults_(defaults),
      preferences_(preferences),
      desktop_(desktop),
      current_(core::FileShareServer::saved(defaults)),
      heading_(namedLabel("heading")),
      explanation_(namedLabel("explanation")),
      address_(new QLineEdit),
      save_(new QPushButton),
      warning_(namedLabel("warning")),
      currentServer_(namedLabel("currentServer")),
      restore_(new QPushButton),
      note_(namedLabel("note")),
      languageChange_(preferences.onChanged([this] { redraw(); })) {
    build();
    connect(address_, &QLineEdit::textChanged, this, [this] { redraw(); });
    connect(address_, &QLineEdit::returnPressed, this, [this] { save(); });
    connect(save_, &QPushButton::clicked, this, [this] { save(); });
    connect(restore_, &QPushButton::clicked, this, [this] { use(core::FileShareServer::standard()); });
    address_->setText(QString::fromStdString(current_.url().absoluteString()));
    redraw();
}

void FileShareSettingsView::build() {
    auto font = heading_->font();
    font.setBold(true);
    heading_->setFont(font);
    address_->setObjectName(QStringLiteral("address"));
    address_->setLayoutDirection(Qt::LeftToRight);
    address_->setAlignment(Qt::AlignLeft);
    address_->setInputMethodHints(Qt::ImhUrlCharactersOnly | Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    save_->setObjectName(QStringLiteral("save"));
    restore_->setObjectName(QStringLiteral("restore"));
    restore_->setText(QString::fromStdString(core::FileShareServer::standard().host()));
    warning_->setProperty("role", QStringLiteral("warning")); // the window's colour

    auto* row = new QHBoxLayout;
    row->addWidget(address_, 1);
    row->addWidget(save_);
    auto* restoreRow = new QHBoxLayout;
    restoreRow->addWidget(currentServer_, 1);
    restoreRow->addWidget(restore_);
    auto* column = new QVBoxLayout(this);
    column->addWidget(heading_);
    column->addWidget(explanation_);
    column->addLayout(row);
    column->addWidget(warning_);
    column->addLayout(restoreRow);
    column->addWidget(note_);
}

std::optional<core::FileShareServer> FileShareSettingsView::draft() const {
    return core::FileShareServer::validating(address_->text().toStdString());
}

void FileShareSettingsView::save() {
    if (const auto server = draft()) {
        use(*server);
    }
}

void FileShareSettingsView::use(const core::FileShareServer& server) {
    server.save(defaults_);
    current_ = server;
    address_->setText(QString::fromStdString(server.url().absoluteString()));
    redraw();
}

void FileShareSettingsView::redraw() {
    const auto language = preferences_.state().language;
    const auto server = draft();
    setLayoutDirection(directionOf(language));
    heading_->setText(rendered(texts::fileSharingServer, language));
    explanation_->setText(rendered(texts::fileSharingServerExplanation.on(desktop_), language));
    address_->setAccessibleName(rendered(texts::fileSharingServerAddress, language));
    save_->setText(rendered(texts::save, language));
    save_->setEnabled(!server || *server != current_);
    warning_->setText(rendered(texts::invalidServerAddress, language));
    warning_->setVisible(!server);
    currentServer_->setText(rendered(texts::currentServer(current_.displayName()), language));
    note_->setText(rendered(texts::serverAddressNote, language));
}

} // namespace quillane
