// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/ClipboardPanel.hpp"
#include "core/preferences/AppPreferences.hpp"

#include <QIcon>

#include <functional>
#include <string>

namespace quillane {

struct Platform;

/// What the window of the clipboard history needs. Everything referred to must outlive it.
struct HistoryPanelServices {
    const Platform& platform;
    ClipboardPanel& panel;
    core::AppPreferences& preferences;
    std::function<QIcon(const std::string& name, const QColor& color)> symbol; ///< a null icon for unknown names
    std::function<void()> openSettings;                                        ///< shows the settings of the history
};

} // namespace quillane
