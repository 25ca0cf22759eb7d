// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/keyboard/KeyboardLayout.hpp"
#include "core/support/Subscription.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillane {

/// One keyboard input source (a layout) that the user can switch to.
struct InputSource {
    std::string id;                     ///< stable and unique among the enabled sources, never empty
    std::string localizedName;          ///< as shown to users, for example "Hebrew"
    std::vector<std::string> languages; ///< BCP 47, the main one first; may be empty

    bool operator==(const InputSource&) const = default;
};

/// The enabled keyboard input sources. Main thread. Reading never blocks on another application.
class InputSources {
public:
    virtual ~InputSources() = default;

    /// The enabled, selectable keyboard sources in the system's order; none when the system does not report them.
    [[nodiscard]] virtual std::optional<std::vector<InputSource>> enabled() const = 0;

    /// The source in use; none when the system does not report it.
    [[nodiscard]] virtual std::optional<InputSource> current() const = 0;

    /// What the keys type in an enabled source; none for one that is not enabled or has no keys of its own (an input
    /// method). Reads hundreds of keys: ask once for each use, not while a key waits.
    [[nodiscard]] virtual std::optional<core::KeyboardLayout> layout(std::string_view id) const = 0;

    /// Makes the source the current one. False when it is not enabled or the system refuses; then nothing changes.
    [[nodiscard]] virtual bool select(std::string_view id) = 0;

    /// True when a system shortcut on the keys that were held last has already switched the source, so that a chord of
    /// ours on the same keys must not switch again.
    [[nodiscard]] virtual bool switchedBySystemShortcut() const = 0;

    /// Whether the desktop's settings have a page where input sources are chosen. Does not change while this lives.
    [[nodiscard]] virtual bool hasSettings() const = 0;

    /// Shows that page. False when there is none.
    virtual bool openSettings() = 0;

    /// Announces that the current source or the list of enabled ones has changed.
    virtual core::Subscription onChanged(std::function<void()> callback) = 0;
};

} // namespace quillane
