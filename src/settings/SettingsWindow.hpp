// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "settings/SettingsServices.hpp"

#include "core/direction/WritingDirection.hpp"
#include "core/settings/SettingsPage.hpp"

#include <QMargins>
#include <QRect>
#include <QTimer>
#include <QWidget>

namespace quillane {

class SettingsView;

/// The one settings window. It is made once and kept: closing hides it. While it is open the program is like any other
/// application; its place and size are remembered, across launches as well,
/// but not those of a maximized or full-screen window. The first time it is moved onto the screen as a whole.
class SettingsWindow : public QWidget {
    Q_OBJECT

public:
    /// The defaults key of the window's place and size, "x y width height".
    static constexpr auto frameKey = "NSWindow Frame QuillaneSettings";

    explicit SettingsWindow(SettingsServices services);

    /// Shows a page in front of everything.
    void present(core::SettingsPage page);

    /// Shows what has changed.
    void refresh();

    /// The permissions page is what the user can see.
    [[nodiscard]] bool showsPermissions() const;

    /// The window is in front and the text box of the testing page has the focus.
    [[nodiscard]] bool isTextBoxFocused() const;

    /// Turns the paragraph at the cursor of that text box.
    void apply(core::WritingDirection direction);

    [[nodiscard]] SettingsView& view() { return *view_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void restoreFrame();
    void frameHasChanged();
    void saveFrame();
    void retitle();

    /// What the window manager draws around the window, or is expected to draw.
    [[nodiscard]] QMargins decoration() const;

    /// Lets the minimum size give way to a screen that is smaller.
    void fitMinimumSize();

    /// Moves the whole window onto its screen, smaller if need be.
    void fitScreen();

    SettingsServices services_;
    SettingsView* view_;
    QTimer frameChanged_;
    bool isOpening_ = true; ///< for the first time, until it stays where it is
    QRect frame_;           ///< the last one that was neither maximized nor full-screen
    core::Subscription languageChange_;
};

} // namespace quillane
