// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/direction/WritingDirection.hpp"
#include "core/localization/AppLanguage.hpp"
#include "settings/SettingsModel.hpp"

#include <optional>
#include <string>

#include <sys/types.h>

namespace quillane {

/// The last direction chord that was delivered, and the number of chords since start-up.
struct DirectionDeliveries {
    std::optional<core::WritingDirection> last;
    std::size_t count = 0;
};

/// The state of the clipboard history, and nothing of its contents.
struct ClipboardReport {
    core::LocalizedText status;
    std::size_t entries = 0;
    bool storageError = false;
    bool unread = false;        ///< a saved history exists that cannot be read now
    bool usedElsewhere = false; ///< another copy of the program has locked the saved history
    std::size_t setAside = 0;   ///< number of histories that could not be read
    bool hotKeyConflict = false;
    bool panelOpen = false;
};

/// The runtime facts that the menu and the settings window show, and nothing of what the user types or copies.
struct StatusReport {
    std::string version;
    core::AppLanguage language{};
    core::FeatureOptions options;
    bool fixesWrongLayout = false;
    SettingsModel::Runtime runtime;
    core::LocalizedText lastAction;
    DirectionDeliveries directions;
    ClipboardReport clipboard;
    bool statusItemVisible = false;
    std::optional<core::LocalizedText> passwordNotice; ///< that a password field in front would not be recognized
    std::optional<pid_t> frontProcess;                 ///< the application that the shortcuts act on now
};

/// One JSON object (RFC 8259) on one line. Texts are in English; beside each, under a name that begins with "shown",
/// stands the text in the report's language, as windows and menus show it.
[[nodiscard]] std::string toJson(const StatusReport& report);

/// A few lines of English text for a terminal.
[[nodiscard]] std::string toText(const StatusReport& report);

} // namespace quillane
