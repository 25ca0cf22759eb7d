// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/StatusItem.hpp"
#include "platform/linux/shell/RowMenuStyle.hpp"

#include <QMenu>

namespace quillane {

/// A menu that draws rows. Rows that keep their kind are changed in place, so an open menu stays open and keeps its
/// selection.
class RowMenu : public QMenu {
public:
    RowMenu();

    void setRows(std::vector<MenuRow> rows, LayoutDirection direction);

protected:
    void changeEvent(QEvent* event) override;

private:
    void rebuild(const std::vector<MenuRow>& rows);
    void drawIcons();

    RowMenuStyle style_;
    std::vector<MenuRow> rows_;
    bool iconsDrawn_ = false; ///< icons are drawn when the menu is first opened, not at start-up
};

} // namespace quillane
