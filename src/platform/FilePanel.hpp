// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusItem.hpp"

#include <filesystem>
#include <functional>
#include <string>

namespace quillane {

/// The desktop's panel for choosing one existing file. Main thread.
class FilePanel {
public:
    struct Texts {
        std::string title;
        std::string message; ///< what the file is chosen for
        std::string prompt;  ///< the button that confirms
        LayoutDirection direction = LayoutDirection::leftToRight;
    };

    using Chosen = std::function<void(const std::filesystem::path&)>;

    virtual ~FilePanel() = default;

    /// Opens the panel in front of everything and returns. Neither folders nor several files can be chosen. Calls back
    /// once when the user confirms, never when they cancel or this object goes. A panel that is open comes to the front
    /// instead of a second one, and its texts and callback stay.
    virtual void chooseFile(const Texts& texts, Chosen chosen) = 0;
};

} // namespace quillane
