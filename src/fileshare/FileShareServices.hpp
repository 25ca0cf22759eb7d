// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/PasteboardContents.hpp"
#include "core/fileshare/FileExaminer.hpp"
#include "core/fileshare/UrlSession.hpp"
#include "core/localization/Desktop.hpp"
#include "core/preferences/AppPreferences.hpp"
#include "core/preferences/UserDefaults.hpp"
#include "platform/FilePanel.hpp"
#include "platform/WindowTraits.hpp"

#include <QIcon>

#include <chrono>
#include <functional>
#include <string>

namespace quillane {

/// What sharing files needs from the rest of the program. Everything referred to must outlive the windows.
struct FileShareServices {
    core::Desktop desktop{}; ///< the desktop that texts name
    core::UserDefaults& userDefaults;
    core::AppPreferences& preferences;
    core::PasteboardContents& pasteboard;
    FilePanel& filePanel;
    WindowTraits& windowTraits;
    core::UrlSessionFactory sessions;
    core::FileExaminer examiner;
    std::function<void()> chooseServer;                                        ///< opens the settings of the server
    std::function<QIcon(const std::string& name, const QColor& color)> symbol; ///< a null icon for unknown names
    std::function<std::chrono::steady_clock::time_point()> now = std::chrono::steady_clock::now;
};

} // namespace quillane
