// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/direction/WritingDirection.hpp"
#include "core/settings/BrandPalette.hpp"
#include "core/settings/SettingsPage.hpp"
#include "settings/SettingsServices.hpp"

#include <QWidget>

#include <map>
#include <optional>
#include <vector>

class QStackedWidget;

namespace quillane {

class PageSelector;
class SettingsHeader;
class SettingsPageView;

/// The content of the settings window: header, page selector and the selected page. A page is made when it is first
/// selected.
class SettingsView : public QWidget {
    Q_OBJECT

public:
    explicit SettingsView(const SettingsServices& services);

    /// Shows the current state of everything.
    void refresh();

    /// Shows the current state of everything if visible, otherwise when `refreshIfStale` is called.
    void redraw();
    void refreshIfStale();

    /// The testing page is shown and its text box has the focus.
    [[nodiscard]] bool isTextBoxFocused() const;

    /// Sets the direction of the paragraph at the cursor of that text box, while the testing page is shown.
    void apply(core::WritingDirection direction);

    /// Scrolls to the address of the file server and gives it the focus. The general page must be shown.
    void focusServerAddress();

    [[nodiscard]] SettingsPageView& currentPage() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow();
    [[nodiscard]] SettingsPageView* makePage(core::SettingsPage page) const;
    [[nodiscard]] int indexOf(core::SettingsPage page);
    void applyAppearance();

    const SettingsServices& services_;
    SettingsHeader* header_;
    PageSelector* selector_;
    QStackedWidget* stack_;
    std::map<core::SettingsPage, int> indices_; ///< of the pages that were made
    std::vector<SettingsPageView*> pages_;      ///< by index
    std::optional<core::Appearance> appearance_;
    QMetaObject::Connection revealing_; ///< keeps the address of the file server visible
    bool stale_ = false;                ///< something has changed while the window was hidden
    std::vector<core::Subscription> subscriptions_;
};

} // namespace quillane
