// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "settings/SettingsServices.hpp"

#include <QWidget>

class QComboBox;
class QLabel;

namespace quillane {

/// The top of the settings window: the name, the status, and the choice of the interface language.
class SettingsHeader : public QWidget {
    Q_OBJECT

public:
    explicit SettingsHeader(const SettingsServices& services);

    void refresh();

private:
    const SettingsServices& services_;
    QLabel* icon_;
    QLabel* wordmark_;
    QLabel* status_;
    QLabel* noStatusItem_;
    QComboBox* language_;
};

} // namespace quillane
