// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "settings/NumberStepper.hpp"
#include "settings/SettingsPageView.hpp"

class QListWidget;

namespace quillane {

/// Every option of the clipboard history.
class ClipboardPage : public SettingsPageView {
    Q_OBJECT

public:
    explicit ClipboardPage(const SettingsServices& services);

private:
    using Options = core::ClipboardOptions;
    using NumberText = std::function<core::LocalizedText(std::string)>;

    void addSwitch();
    void addAccess(Card& card);
    void addKinds();
    void addStorage();
    void addPanel();
    void addExclusions();
    void addClearing();

    [[nodiscard]] Feature optionFeature(const char* symbol, const core::LocalizedText& title,
                                        const core::LocalizedText& explanation, bool Options::*option);
    void addNumber(Card& card, NumberText text, std::int64_t Options::*option, NumberStepper::Range range);

    [[nodiscard]] Options options() const;
    void change(const std::function<void(Options&)>& change);
    void findApplications(const std::function<void()>& found = {});
    void chooseApplication(QWidget* anchor);
    [[nodiscard]] QString nameOf(const std::string& bundleID) const;
    void askToClear();

    std::vector<KnownApplication> applications_; ///< as of the last time they were looked for, by name
};

} // namespace quillane
