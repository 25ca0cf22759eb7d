// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/LocalizedText.hpp"
#include "core/preferences/AppPreferences.hpp"
#include "core/support/Subscription.hpp"

#include <QMessageBox>

namespace quillane {

/// A message with an OK button, whose texts follow the interface language while it is open. Deletes itself when it is
/// closed.
class MessageBox : public QMessageBox {
public:
    MessageBox(core::AppPreferences& preferences, core::LocalizedText title, core::LocalizedText text,
               QWidget* parent = nullptr);

private:
    void redraw();

    core::AppPreferences& preferences_;
    core::LocalizedText title_;
    core::LocalizedText text_;
    core::Subscription languageChange_;
};

} // namespace quillane
