// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "settings/SettingsPageView.hpp"

namespace quillane {

/// The feature switches, Keep Awake, launching at login and the file server.
class GeneralPage : public SettingsPageView {
    Q_OBJECT

public:
    explicit GeneralPage(const SettingsServices& services);

private:
    void addFeatures();
    void addKeepAwake();
    void addLoginItem();
    void addFileManager(Card& card);

    [[nodiscard]] Feature optionFeature(const char* symbol, const core::LocalizedText& title,
                                        const core::LocalizedText& explanation, bool core::FeatureOptions::*option);
};

} // namespace quillane
