// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/ClipboardPanel.hpp"
#include "clipboard/ClipboardTest.hpp"
#include "core/localization/Texts.hpp"

namespace quillane::testing {

/// Key codes that the panel is given.
namespace key {

inline constexpr core::KeyCode one = 18, five = 23, a = 0, v = 9, enter = 36, backspace = 51, down = 125, up = 126;

} // namespace key

/// The panel of a history on fakes, opened while an editor is in front.
class ClipboardPanelTest : public ClipboardTest {
protected:
    ClipboardPanelTest() { editor_ = *workspace.frontmostApplication(); }

    /// A history of these texts, the last one copied last, and its panel.
    ClipboardPanel& open(const std::vector<std::string>& copies) {
        start();
        for (const auto& text : copies) {
            copy(text);
        }
        pass(std::chrono::milliseconds(10));
        panel_ = std::make_unique<ClipboardPanel>(*manager_, platform);
        panel_->onShow = [this] { ++shown_; };
        panel_->onClose = [this] { ++closed_; };
        panel_->onPasteFailed = [this](const core::LocalizedText& text) { failures_.push_back(text); };
        panel_->toggle();
        return *panel_;
    }

    [[nodiscard]] std::vector<std::string> found() const {
        std::vector<std::string> all;
        for (const auto& entry : panel_->filtered()) {
            all.push_back(*entry.text);
        }
        return all;
    }

    [[nodiscard]] std::string selected() const {
        for (const auto& entry : panel_->filtered()) {
            if (entry.id == panel_->selection()) {
                return *entry.text;
            }
        }
        return "nothing";
    }

    [[nodiscard]] std::string onPasteboard() const {
        const auto& items = pasteboard.items();
        return items.empty() || items.front().flavours.empty() ? "" : items.front().flavours.front().second;
    }

    [[nodiscard]] fakes::FakeKeyEvents::PostedKey pasteKey() const {
        return {editor_.pid, key::v, core::flags::command};
    }

    RunningApplication editor_;
    std::unique_ptr<ClipboardPanel> panel_;
    int shown_ = 0;
    int closed_ = 0;
    std::vector<core::LocalizedText> failures_; ///< of pastes
};

} // namespace quillane::testing
