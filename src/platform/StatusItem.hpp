// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace quillane {

/// One row of a menu, as a value.
struct MenuRow {
    enum class Kind { item, separator, header };

    /// A row's icon: a system symbol by its name, or the application's own icon.
    enum class Icon { none, symbol, application };

    Kind kind = Kind::item;
    std::string title; ///< rendered in the interface language
    Icon icon = Icon::none;
    std::string symbol;        ///< a name of the system symbols of macOS, for example "globe"; own icons on Linux
    std::string keyEquivalent; ///< one character, pressed with Command (Control on Linux), or empty
    std::string toolTip;
    bool enabled = true;
    bool checked = false;
    bool checkable = false; ///< announced as a check box, on or off
    std::function<void()> action;
};

/// An image that the desktop tints: only its coverage matters.
struct TemplateImage {
    int width = 0;                   ///< pixels
    int height = 0;                  ///< pixels
    double scale = 1;                ///< pixels per point
    std::vector<std::byte> coverage; ///< width × height, row by row from the top, 0 clear to 255 covered

    bool operator==(const TemplateImage&) const = default;
};

/// Which way menus and their text run.
enum class LayoutDirection { leftToRight, rightToLeft };

/// The agent's item in the menu bar or system tray, with its menu. Main thread.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    /// Replaces the image; the same image again costs nothing.
    virtual void setImage(const TemplateImage& image, const std::string& accessibilityLabel) = 0;

    /// Replaces the menu's rows. An open menu shows the change at once and stays open.
    virtual void setMenu(std::vector<MenuRow> rows, LayoutDirection direction) = 0;

    /// Whether the desktop shows the item at the moment.
    [[nodiscard]] virtual bool isVisible() const = 0;

    /// Opens the menu, as a click on the item does.
    virtual void popUpMenu() = 0;

    /// Shows a short notification of the desktop, for when the item cannot be seen or a command of its menu failed.
    /// Calls `failed`, which may be empty, once it is known that the notification is not shown: there is no such
    /// service, or the user does not allow it. Never inside this call or after this object has been destroyed.
    virtual void notify(const std::string& title, const std::string& text, std::function<void()> failed) = 0;
};

} // namespace quillane
