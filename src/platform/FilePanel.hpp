// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/localization/AppLanguage.hpp"
#include "core/localization/LocalizedText.hpp"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillane {

/// The desktop's panel for choosing one existing file. Main thread.
class FilePanel {
public:
    struct Texts {
        std::string title;
        std::string message;                                     ///< what the file is chosen for
        std::string prompt;                                      ///< the button that confirms
        core::AppLanguage language = core::AppLanguage::english; ///< of what the panel says beside these texts
    };

    using Chosen = std::function<void(const std::filesystem::path&)>;

    /// Takes the URLs of what was dropped on the panel. None: they have been dealt with, and the panel closes. A text
    /// is shown, in the language of the panel's texts, and the panel stays.
    using Dropped = std::function<std::optional<core::LocalizedText>(const std::vector<std::string>& urls)>;

    virtual ~FilePanel() = default;

    /// Opens the panel in front of everything and returns. Neither folders nor several files can be chosen. Calls back
    /// once when the user confirms, never when they cancel or this object goes. A panel that is open comes to the front
    /// instead of a second one, and its texts and callbacks stay. A desktop whose own panel takes drops as a selection
    /// never calls `dropped`.
    virtual void chooseFile(const Texts& texts, Chosen chosen, Dropped dropped) = 0;

    /// Shows these texts on the panel that is open, after the interface language changed. Nothing without one. Where
    /// the system draws the panel, its own words stay in the language in which it was opened.
    virtual void setTexts(const Texts& texts) = 0;
};

} // namespace quillane
