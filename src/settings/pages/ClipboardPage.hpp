// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "settings/ApplicationChooser.hpp"
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
    void addSetAside(Card& card);
    void addPanel();
    void addExclusions();
    void addClearing();

    [[nodiscard]] Feature optionFeature(const char* symbol, const core::LocalizedText& title,
                                        const core::LocalizedText& explanation, bool Options::*option);
    void addNumber(Card& card, NumberText text, std::int64_t Options::*option, NumberStepper::Range range);

    [[nodiscard]] Options options() const;
    void change(const std::function<void(Options&)>& change);
    void askToClear(core::ClipboardHistory::Clearing clearing);
    void askToRecover(const core::SetAsideHistory& history);

    /// Asks before something is deleted or changed; the buttons name what they do.
    struct Answer {
        core::LocalizedText text;
        bool destroys = false;
        std::function<void()> action;
    };

    void ask(const core::LocalizedText& question, const core::LocalizedText& note, const std::vector<Answer>& answers);

    ApplicationChooser* applications_;
};

} // namespace quillane
