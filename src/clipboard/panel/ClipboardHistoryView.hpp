// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/panel/ClipboardList.hpp"
#include "clipboard/panel/ClipboardRow.hpp"
#include "clipboard/panel/EntryPreview.hpp"
#include "clipboard/panel/HelpCard.hpp"
#include "clipboard/panel/HistoryPanelServices.hpp"
#include "clipboard/panel/PanelNotice.hpp"
#include "clipboard/panel/SearchBox.hpp"
#include "core/support/Lifetime.hpp"

#include <QWidget>

class QKeyEvent;
class QLabel;
class QMenu;
class QStackedLayout;
class QToolButton;

namespace quillane {

/// What the panel shows: the search field, the list of results, and a line about the keys or the last choice.
class ClipboardHistoryView : public QWidget {
    Q_OBJECT

public:
    explicit ClipboardHistoryView(const HistoryPanelServices& services);

    /// The panel is about to open: scrolls to the top and clears the search field.
    void begin();

    /// The panel is open: gives the search field the focus.
    void shown();

    /// The panel has closed: releases everything that it showed.
    void end();

    /// Performs the action of a key; false when it types.
    bool handleKey(const QKeyEvent& event);

    /// The menu of the selected row, beside it.
    void openMenu();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void build();
    void connectList();
    void refresh();
    void updateSelection();
    void updateNotices(core::AppLanguage language);
    void updateEmptyState(core::AppLanguage language);
    void redraw();
    void openMenu(const core::Uuid& id, QPoint at);
    void choose(const QModelIndex& index);
    void hover(const QModelIndex& index);
    void showPreview(const core::Uuid& id);
    void dismissPreview();
    void openSettings();
    void showHelp();
    bool filterKey(QObject* watched, QKeyEvent& event);

    HistoryPanelServices services_;
    PanelSymbols symbols_;
    EntryImages images_;
    EntryFiles files_;
    ClipboardListModel* entries_;
    SearchBox* search_;
    PanelNotice* recordingOff_;
    PanelNotice* notice_;
    QLabel* retypedQuery_; ///< what was also searched for
    ClipboardList* list_;
    ClipboardRow* row_;
    QStackedLayout* pages_ = nullptr;
    QLabel* emptySymbol_;
    QLabel* emptyTitle_;
    QLabel* emptyText_;
    QLabel* footer_;
    QToolButton* help_;
    QToolButton* settings_;
    EntryPreview* preview_;
    HelpCard* helpCard_;
    std::optional<core::Uuid> hovered_;
    std::uint64_t hovering_ = 0; ///< counts rows that the pointer entered; a preview of an earlier one is not shown
    std::optional<core::Uuid> announced_;
    core::Lifetime lifetime_;
    core::Subscription panelChange_;
    core::Subscription languageChange_;
};

} // namespace quillane
