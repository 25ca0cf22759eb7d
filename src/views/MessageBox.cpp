// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "views/MessageBox.hpp"

#include "core/localization/Texts.hpp"
#include "views/Text.hpp"

#include <QAbstractButton>
#include <QPushButton>

#include <utility>

namespace quillane {

MessageBox::MessageBox(core::AppPreferences& preferences, core::LocalizedText title, core::LocalizedText text,
                       QWidget* parent)
    : QMessageBox(parent),
      preferences_(preferences),
      title_(std::move(title)),
      text_(std::move(text)),
      languageChange_(preferences.onChanged([this] { redraw(); })) {
    setIcon(QMessageBox::Information);
    setTextFormat(Qt::PlainText);
    setStandardButtons(QMessageBox::Ok);
    setAttribute(Qt::WA_DeleteOnClose);
    buttons_.emplace_back(button(QMessageBox::Ok), core::texts::qtOK); // some desktops have another word for it
    redraw();
}

void MessageBox::setNote(core::LocalizedText note) {
    note_ = std::move(note);
    redraw();
}

QPushButton& MessageBox::addAnswer(const core::LocalizedText& text, ButtonRole role) {
    if (standardButtons() != QMessageBox::NoButton) {
        buttons_.clear();
        setStandardButtons(QMessageBox::NoButton);
    }
    auto* answer = addButton(QString(), role);
    buttons_.emplace_back(answer, text);
    redraw();
    return *answer;
}

void MessageBox::redraw() {
    const auto language = preferences_.state().language;
    setWindowTitle(rendered(title_, language));
    setText(rendered(text_, language));
    if (note_ != core::LocalizedText()) {
        setInformativeText(rendered(note_, language));
    }
    for (const auto& [button, text] : buttons_) {
        button->setText(rendered(text, language));
    }
}

} // namespace quillane
