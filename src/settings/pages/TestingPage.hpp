// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/WritingDirection.hpp"
#include "settings/SettingsPageView.hpp"

class QTextEdit;

namespace quillane {

/// The current state of permissions and keyboard, and a text box to try the direction shortcuts in.
class TestingPage : public SettingsPageView {
    Q_OBJECT

public:
    explicit TestingPage(const SettingsServices& services);

    [[nodiscard]] bool isTextBoxFocused() const;

    /// Sets the direction of the paragraph at the cursor of the text box.
    void apply(core::WritingDirection direction);

private:
    void addCheck();
    void addInputSource(Card& card);
    void addTryOut();
    void addTarget();

    /// The caret of the empty text box is where the interface's text would begin; Qt's default is the left.
    void placeCaret();

    QTextEdit* box_;
};

} // namespace quillane
