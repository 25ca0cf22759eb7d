// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/FileShareServer.hpp"
#include "core/localization/Desktop.hpp"
#include "core/preferences/AppPreferences.hpp"
#include "core/preferences/UserDefaults.hpp"

#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;

namespace quillane {

/// The section of the settings where the file server is chosen. A running upload keeps its server; the next start of
/// any upload reads what is saved here.
class FileShareSettingsView : public QWidget {
    Q_OBJECT

public:
    FileShareSettingsView(core::UserDefaults& defaults, core::AppPreferences& preferences, core::Desktop desktop);

private:
    void build();
    void save();
    void use(const core::FileShareServer& server);
    void redraw();
    [[nodiscard]] std::optional<core::FileShareServer> draft() const;

    core::UserDefaults& defaults_;
    core::AppPreferences& preferences_;
    core::Desktop desktop_;
    core::FileShareServer current_;

    QLabel* heading_;
    QLabel* explanation_;
    QLineEdit* address_;
    QPushButton* save_;
    QLabel* warning_;
    QLabel* currentServer_;
    QPushButton* restore_;
    QLabel* note_;
    core::Subscription languageChange_; // last: dropped before what its callback uses
};

} // namespace quillane
