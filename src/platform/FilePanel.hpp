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
        core::AppLanguage language = core::AppLanguage::english; ///< of the panel's other texts
    };

    using Chosen = std::function<void(const std::filesystem::path&)>;

    /// Takes the URLs of what was dropped on the panel. None: they have been dealt with, and the panel closes. A text
    /// is shown, in the language of the panel's texts, and the panel stays.
    using Dropped = std::function<std::optional<core::LocalizedText>(const std::vector<std::string>& urls)>;

    virtual ~FilePanel() = default;

    /// Opens the panel in front of everything and returns. Neither folders nor several files can be chosen. Calls back
    /// once when the user confirms, never when they cancel or this object is destroyed. If a panel is open already, it
    /// comes to the front instead and keeps its texts and callbacks. A desktop whose panel treats a drop as a selection
    /// never calls `dropped`.
    virtual void chooseFile(const Texts& texts, Chosen chosen, Dropped dropped) = 0;

    /// Shows these texts on the panel that is open, after the interface language changed. Does nothing without one.
    /// Where the system draws the panel, its own texts keep the language in which it was opened.
    virtual void setTexts(const Texts& texts) = 0;
};

} // namespace quillane
