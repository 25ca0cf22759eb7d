// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/AreaCapture.hpp"

#include <optional>
#include <utility>

namespace quillane::fakes {

/// A selection that a test ends.
class FakeAreaCapture final : public AreaCapture {
public:
    [[nodiscard]] Means means() const override { return means_; }

    [[nodiscard]] bool start(core::AppLanguage language, std::function<void()> keptOut) override {
        if (refuses_ || means_ == Means::none) {
            return false;
        }
        ++starts_;
        if (!selecting_) {
            selecting_ = language;
            keptOut_ = std::move(keptOut);
        }
        return true;
    }

    bool openShortcutSettings() override {
        settingsShown_ += means_ == Means::systemShortcut ? 1 : 0;
        return means_ == Means::systemShortcut;
    }

    void setMeans(Means means) { means_ = means; }

    /// The system makes no event source.
    void refuse() { refuses_ = true; }

    /// Another program keeps the keyboard to itself.
    void keepOut() {
        selecting_.reset();
        std::exchange(keptOut_, nullptr)();
    }

    /// The user cancels, or has selected.
    void end() { selecting_.reset(); }

    /// The language of the current selection.
    [[nodiscard]] std::optional<core::AppLanguage> selecting() const { return selecting_; }

    /// The number of successful requests for a selection.
    [[nodiscard]] int starts() const { return starts_; }

    [[nodiscard]] int settingsShown() const { return settingsShown_; }

private:
    Means means_ = Means::systemShortcut;
    bool refuses_ = false;
    std::optional<core::AppLanguage> selecting_;
    std::function<void()> keptOut_;
    int starts_ = 0;
    int settingsShown_ = 0;
};

} // namespace quillane::fakes
