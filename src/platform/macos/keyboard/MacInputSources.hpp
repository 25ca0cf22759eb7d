// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/InputSources.hpp"

#include <memory>

namespace quillane {

/// Text Input Sources (Carbon HIToolbox, TextInputSources.h), which answer on the main thread only.
class MacInputSources final : public InputSources {
public:
    /// Starts listening for the system's notifications of changed sources.
    MacInputSources();
    ~MacInputSources() override;

    /// TISCreateInputSourceList of the enabled, selectable keyboard sources.
    [[nodiscard]] std::optional<std::vector<InputSource>> enabled() const override;

    /// TISCopyCurrentKeyboardInputSource.
    [[nodiscard]] std::optional<InputSource> current() const override;

    /// UCKeyTranslate over the layout data of the source.
    [[nodiscard]] std::optional<core::KeyboardLayout> layout(std::string_view id) const override;

    /// TISSelectInputSource on the first enabled source with this identifier.
    [[nodiscard]] bool select(std::string_view id) override;

    /// False: the system's shortcuts for input sources (Control-Space, Globe, Caps Lock) are never chords of modifiers
    /// only.
    [[nodiscard]] bool switchedBySystemShortcut() const override;

    [[nodiscard]] bool hasSettings() const override { return true; }

    /// The page "Keyboard" of System Settings.
    bool openSettings() override;

    core::Subscription onChanged(std::function<void()> callback) override;

private:
    struct Notices;
    std::unique_ptr<Notices> notices_;
};

} // namespace quillane
