// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "settings/SettingsPageView.hpp"

namespace quillane {

/// The granted permissions, their purpose, and everything that helps to grant them.
class PermissionsPage : public SettingsPageView {
    Q_OBJECT

public:
    explicit PermissionsPage(const SettingsServices& services);

private:
    void addPermission(Card& card, core::MacPermission permission, const std::string& symbol,
                       const core::LocalizedText& title, const core::LocalizedText& purpose);
    void addHelp();
};

} // namespace quillane
