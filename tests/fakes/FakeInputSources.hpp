// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Listeners.hpp"
#include "platform/InputSources.hpp"
#include "support/Journal.hpp"

#include <map>
#include <utility>

namespace quillane::fakes {

/// A list of input sources of which the first is in use until another is selected.
class FakeInputSources final : public InputSources {
public:
    [[nodiscard]] std::optional<std::vector<InputSource>> enabled() const override;
    [[nodiscard]] std::optional<InputSource> current() const override;
    [[nodiscard]] std::optional<core::KeyboardLayout> layout(std::string_view id) const override;
    [[nodiscard]] bool select(std::string_view id) override;

    [[nodiscard]] bool switchedBySystemShortcut() const override { return switchedBySystemShortcut_; }

    [[nodiscard]] bool hasSettings() const override { return settings; }

    bool openSettings() override {
        openings += settings ? 1 : 0;
        return settings;
    }

    core::Subscription onChanged(std::function<void()> callback) override;

    /// Replaces the list; the first source is in use then.
    void setEnabled(std::vector<InputSource> sources);

    /// The user switches through the system. The source need not be in the list.
    void switchFromOutside(InputSource source);

    /// Whether the system reports the list, and the source in use.
    void setListReadable(bool readable) { listReadable_ = readable; }

    void setCurrentReadable(bool readable) { currentReadable_ = readable; }

    /// Makes the system refuse every selection.
    void setRefusesSelection(bool refuses) { refusesSelection_ = refuses; }

    void setSwitchedBySystemShortcut(bool switched) { switchedBySystemShortcut_ = switched; }

    /// The number of successful selections of a source.
    [[nodiscard]] int selectCount() const { return selectCount_; }

    /// How often the source in use was read.
    [[nodiscard]] int currentReadCount() const { return currentReadCount_; }

    /// Gives a source keys, whether or not it is in the list.
    void setLayout(const std::string& id, core::KeyboardLayout layout) { layouts_[id] = std::move(layout); }

    Journal* journal = nullptr; ///< none: nothing is recorded
    bool settings = true;       ///< the desktop's settings have a page for input sources
    int openings = 0;           ///< how often it was shown

private:
    std::vector<InputSource> sources_;
    std::map<std::string, core::KeyboardLayout, std::less<>> layouts_;
    std::optional<InputSource> current_;
    bool listReadable_ = true;
    bool currentReadable_ = true;
    bool refusesSelection_ = false;
    bool switchedBySystemShortcut_ = false;
    int selectCount_ = 0;
    mutable int currentReadCount_ = 0;
    core::Listeners<> changed_;
};

} // namespace quillane::fakes
