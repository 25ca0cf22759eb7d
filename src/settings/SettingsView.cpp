// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/SettingsView.hpp"

#include "settings/AccessibleSettings.hpp"
#include "settings/PageSelector.hpp"
#include "settings/SettingsHeader.hpp"
#include "settings/pages/ClipboardPage.hpp"
#include "settings/pages/GeneralPage.hpp"
#include "settings/pages/PermissionsPage.hpp"
#include "settings/pages/ShortcutsPage.hpp"
#include "settings/pages/TestingPage.hpp"
#include "settings/pages/UpdateSettingsView.hpp"
#include "views/Colors.hpp"
#include "views/Text.hpp"

#include <QAccessible>
#include <QCoreApplication>
#include <QEvent>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace quillane {

namespace {

constexpr int sideMargin = 24;
constexpr int contentWidth = 860; ///< lines longer than that are hard to read

} // namespace

SettingsView::SettingsView(const SettingsServices& services) : services_(services), stack_(new QStackedWidget) {
    // Before the first widget that it describes; Qt keeps one registration, however often it is installed.
    QAccessible::installFactory(&accessibleSettings);
    header_ = new SettingsHeader(services);
    selector_ = new PageSelector(services.symbol);
    setObjectName(QStringLiteral("settingsView"));
    setAttribute(Qt::WA_StyledBackground);
    stack_->setObjectName(QStringLiteral("pages"));
    auto* top = new QVBoxLayout;
    top->setContentsMargins(sideMargin, 18, sideMargin, 10);
    top->setSpacing(14);
    top->addWidget(header_);
    top->addWidget(selector_);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(top);
    column->addWidget(stack_, 1);
    connect(selector_, &PageSelector::chosen, this, [this](core::SettingsPage page) { services_.model.setPage(page); });
    QCoreApplication::instance()->installEventFilter(this); // a style sheet keeps palette changes from its widgets
    follow();
    refresh();
}

void SettingsView::follow() {
    const auto redraw = [this] { this->redraw(); };
    connect(&services_.model, &SettingsModel::changed, this, redraw);
    subscriptions_.push_back(services_.preferences.onChanged(redraw));
    subscriptions_.push_back(services_.permissions.onChanged(redraw));
    subscriptions_.push_back(services_.loginItem.onChanged(redraw));
    subscriptions_.push_back(services_.updater.onChanged(redraw));
}

void SettingsView::redraw() {
    stale_ = true;
    if (isVisible()) {
        refresh();
    }
}

void SettingsView::refreshIfStale() {
    if (stale_) {
        refresh();
    }
}

void SettingsView::refresh() {
    stale_ = false;
    applyAppearance();
    const auto language = services_.preferences.state().language;
    const auto direction = directionOf(language);
    if (layoutDirection() != direction) {
        setLayoutDirection(direction);
    }
    const auto page = services_.model.page();
    header_->refresh();
    selector_->show(page, language);
    stack_->setCurrentIndex(indexOf(page));
    currentPage().refresh();
}

SettingsPageView& SettingsView::currentPage() const {
    return *pages_.at(static_cast<std::size_t>(stack_->currentIndex()));
}

int SettingsView::indexOf(core::SettingsPage page) {
    if (const auto made = indices_.find(page); made != indices_.end()) {
        return made->second;
    }
    auto* view = makePage(page);
    view->refresh(); // before it is measured for the first time
    view->setMaximumWidth(contentWidth);
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setAlignment(Qt::AlignHCenter);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(view);
    const int index = stack_->addWidget(scroll);
    indices_[page] = index;
    pages_.push_back(view);
    return index;
}

SettingsPageView* SettingsView::makePage(core::SettingsPage page) const {
    switch (page) {
    case core::SettingsPage::general:
        return new GeneralPage(services_);
    case core::SettingsPage::shortcuts:
        return new ShortcutsPage(services_);
    case core::SettingsPage::clipboard:
        return new ClipboardPage(services_);
    case core::SettingsPage::permissions:
        return new PermissionsPage(services_);
    case core::SettingsPage::testing:
        return new TestingPage(services_);
    case core::SettingsPage::updates:
        break;
    }
    return new UpdateSettingsView(services_);
}

bool SettingsView::isTextBoxFocused() const {
    const auto* testing = dynamic_cast<const TestingPage*>(&currentPage());
    return testing != nullptr && testing->isTextBoxFocused();
}

void SettingsView::apply(core::WritingDirection direction) {
    if (auto* testing = dynamic_cast<TestingPage*>(&currentPage())) {
        testing->apply(direction);
    }
}

void SettingsView::focusServerAddress() {
    auto* address = currentPage().findChild<QLineEdit*>(QStringLiteral("address"));
    auto* scroll = qobject_cast<QScrollArea*>(stack_->currentWidget());
    const auto reveal = [address, scroll] {
        if (address->window()->focusWidget() == address) {
            scroll->ensureWidgetVisible(address);
        }
    };
    address->setFocus(Qt::OtherFocusReason);
    address->selectAll();
    reveal();
    disconnect(revealing_);
    revealing_ = connect(scroll->verticalScrollBar(), &QScrollBar::rangeChanged, this, reveal); // a new page grows
}

bool SettingsView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && currentAppearance() != appearance_) {
        redraw();
    }
    return QWidget::eventFilter(watched, event);
}

void SettingsView::applyAppearance() {
    const auto appearance = currentAppearance();
    if (appearance_ == appearance) {
        return;
    }
    appearance_ = appearance;
    setStyleSheet(controlsStyleSheet(appearance));
}

} // namespace quillane
