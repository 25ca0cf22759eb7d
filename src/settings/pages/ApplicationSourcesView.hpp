// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/keyboard/ApplicationSources.hpp"
#include "settings/ApplicationChooser.hpp"
#include "settings/SettingsServices.hpp"

#include <QStringList>
#include <QWidget>

#include <functional>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace quillane {

/// The applications that always have the same input source, each with its source.
class ApplicationSourcesView : public QWidget {
    Q_OBJECT

public:
    explicit ApplicationSourcesView(const SettingsServices& services);

    /// Shows the stored settings in the current language.
    void refresh();

private:
    [[nodiscard]] core::ApplicationSourceOptions options() const;
    void change(const std::function<void(core::ApplicationSourceOptions&)>& change);
    void choose();
    void addEntry(const std::string& application, const std::string& source, const std::vector<InputSource>& sources,
                  core::AppLanguage language);

    const SettingsServices& services_;
    ApplicationChooser* applications_;
    QVBoxLayout* list_;
    QLabel* explanation_;
    QPushButton* add_;
    QStringList shown_; ///< what the entries were made of
};

} // namespace quillane
