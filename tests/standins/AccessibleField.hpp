// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAccessibleWidget>
#include <QMenu>
#include <QTextEdit>

#include <functional>

/// A field for text that assistive technologies can ask for its context menu.
class Field : public QTextEdit {
public:
    struct Traits {
        bool multiLine = true;
        bool webContent = false;        ///< it is a web area itself
        bool keepsSelection = false;    ///< the selection cannot be set from outside
        bool hidesCursor = false;       ///< the position of the cursor cannot be read
        bool hidesMenu = false;         ///< only keys and the mouse open the context menu
        std::function<void()> showMenu; ///< must return at once
    };

    Field(const QString& name, Traits traits);

    [[nodiscard]] const Traits& traits() const { return traits_; }

    Traits& traits() { return traits_; }

protected:
    void contextMenuEvent(QContextMenuEvent*) override { traits_.showMenu(); }

private:
    Traits traits_;
};

/// A page, which has fields.
class WebPage : public QWidget {};

/// A window, in whose tree its context menu is while that is open; Qt keeps such a menu out of it.
class MenuOwner : public QWidget {
public:
    [[nodiscard]] virtual QMenu* menu() const = 0; ///< nullptr when there is none yet
};

/// Describes the fields, pages and windows to assistive technologies.
[[nodiscard]] QAccessibleInterface* describeField(const QString& className, QObject* object);
