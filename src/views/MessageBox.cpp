// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "views/MessageBox.hpp"

#include "core/localization/Texts.hpp"

#include <QAbstractButton>

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
    redraw();
}

void MessageBox::redraw() {
    const auto language = preferences_.state().language;
    const auto rendered = [language](const core::LocalizedText& text) {
        return QString::fromStdString(text.rendered(language));
    };
    setWindowTitle(rendered(title_));
    setText(rendered(text_));
    button(QMessageBox::Ok)->setText(rendered(core::texts::qtOK)); // some desktops have a word of their own for it
}

} // namespace quillane
