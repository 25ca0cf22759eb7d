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
/// application. Its position and size are remembered, across launches too, except while maximized or full-screen. The
/// first time it is moved entirely onto the screen.
class SettingsWindow : public QWidget {
    Q_OBJECT

public:
    /// The defaults key of the window's position and size, "x y width height".
    static constexpr auto frameKey = "NSWindow Frame QuillaneSettings";

    explicit SettingsWindow(SettingsServices services);

    /// Shows a page in front of everything.
    void present(core::SettingsPage page);

    /// Shows what has changed.
    void refresh();

    /// The permissions page is visible.
    [[nodiscard]] bool showsPermissions() const;

    /// The window is in front and the text box of the testing page has the focus.
    [[nodiscard]] bool isTextBoxFocused() const;

    /// Sets the direction of the paragraph at the cursor of that text box.
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

    /// The frame that the window manager draws around the window, or is expected to draw.
    [[nodiscard]] QMargins decoration() const;

    /// Reduces the minimum size to fit a smaller screen.
    void fitMinimumSize();

    /// Moves the whole window onto its screen, shrinking it if necessary.
    void fitScreen();

    SettingsServices services_;
    SettingsView* view_;
    QTimer frameChanged_;
    bool isOpening_ = true; ///< shown for the first time, until its position is final
    QRect frame_;           ///< the last one that was neither maximized nor full-screen
    core::Subscription languageChange_;
};

} // namespace quillane
