// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"
#include "core/preferences/AppPreferences.hpp"
#include "core/support/Subscription.hpp"

#include <QMessageBox>

#include <utility>
#include <vector>

namespace quillane {

/// A message with an OK button, or a question with answers, whose texts follow the interface language while it is open.
/// Deletes itself when it is closed.
class MessageBox : public QMessageBox {
public:
    MessageBox(core::AppPreferences& preferences, core::LocalizedText title, core::LocalizedText text,
               QWidget* parent = nullptr);

    /// A smaller text below the other one.
    void setNote(core::LocalizedText note);

    /// Adds the button of an answer. The first answer replaces the OK button.
    QPushButton& addAnswer(const core::LocalizedText& text, ButtonRole role);

private:
    void redraw();

    core::AppPreferences& preferences_;
    core::LocalizedText title_;
    core::LocalizedText text_;
    core::LocalizedText note_;
    std::vector<std::pair<QAbstractButton*, core::LocalizedText>> buttons_;
    core::Subscription languageChange_;
};

} // namespace quillane
