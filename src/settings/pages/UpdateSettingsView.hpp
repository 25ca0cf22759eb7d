// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "settings/SettingsPageView.hpp"

namespace quillane {

/// The installed version and how it is updated.
class UpdateSettingsView : public SettingsPageView {
    Q_OBJECT

public:
    explicit UpdateSettingsView(const SettingsServices& services);

private:
    void addSwitch();

    [[nodiscard]] core::LocalizedText lastCheck() const;
};

} // namespace quillane
