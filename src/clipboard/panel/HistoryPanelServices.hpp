// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/ClipboardPanel.hpp"
#include "core/clipboard/FileReference.hpp"
#include "core/localization/Desktop.hpp"
#include "core/preferences/AppPreferences.hpp"
#include "platform/MainQueue.hpp"
#include "platform/SerialQueue.hpp"
#include "platform/WindowTraits.hpp"

#include <QIcon>

#include <functional>
#include <string>

namespace quillane {

/// What the window of the clipboard history needs. Everything referred to must outlive it.
struct HistoryPanelServices {
    core::Desktop desktop{}; ///< the desktop and keys that texts name
    ClipboardPanel& panel;
    core::AppPreferences& preferences;
    WindowTraits& windowTraits;
    MainQueue& mainQueue;
    SerialQueue& imageQueue;   ///< for decoding pictures
    SerialQueue& fileQueue;    ///< for checking files, which an unreachable server may delay
    core::FileFinder findFile; ///< finds the files of entries
    std::function<QIcon(const std::string& name, const QColor& color)> symbol; ///< a null icon for unknown names
    std::function<void()> openSettings;                                        ///< shows the settings of the history
};

} // namespace quillane
