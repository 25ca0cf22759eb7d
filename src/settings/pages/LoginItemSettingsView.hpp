// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "settings/SettingsPageView.hpp"

namespace quillane {

/// The section of the General page about launching at login.
class LoginItemSettingsView : public SettingsPageView {
    Q_OBJECT

public:
    explicit LoginItemSettingsView(const SettingsServices& services);

protected:
    void showEvent(QShowEvent* event) override;
};

} // namespace quillane
