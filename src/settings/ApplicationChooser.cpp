// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/ApplicationChooser.hpp"

#include "views/ToolTip.hpp"

#include <QCollator>
#include <QMenu>
#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace quillane {

ApplicationChooser::ApplicationChooser(Search search, QWidget& page)
    : QObject(&page), search_(std::move(search)), page_(page) {}

void ApplicationChooser::find(std::function<void()> found) {
    if (!search_) {
        return;
    }
    search_([self = QPointer(this), found = std::move(found)](const std::vector<KnownApplication>& applications) {
        if (!self) {
            return;
        }
        self->applications_ = applications;
        const QCollator collator;
        std::ranges::sort(self->applications_, [&](const KnownApplication& a, const KnownApplication& b) {
            return collator.compare(QString::fromStdString(a.name), QString::fromStdString(b.name)) < 0;
        });
        found();
    });
}

QString ApplicationChooser::nameOf(const std::string& bundleID) const {
    const auto found = std::ranges::find(applications_, bundleID, &KnownApplication::bundleID);
    return QString::fromStdString(found != applications_.end() ? found->name : bundleID);
}

void ApplicationChooser::offer(QWidget& anchor, const std::vector<std::string>& listed,
                               const std::function<void(const std::string& bundleID)>& chosen) {
    auto* menu = new QMenu(&page_);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setStyleSheet(QStringLiteral("QMenu { menu-scrollable: 1; }")); // instead of many columns
    const auto add = [&](bool running) {
        for (const auto& choice : applications_) {
            if (choice.running != running || std::ranges::find(listed, choice.bundleID) != listed.end()) {
                continue;
            }
            auto* action =
                menu->addAction(QString::fromStdString(choice.name).replace(QLatin1Char('&'), QStringLiteral("&&")));
            action->setToolTip(plainToolTip(QString::fromStdString(choice.bundleID)));
            connect(action, &QAction::triggered, this, [chosen, bundleID = choice.bundleID] { chosen(bundleID); });
        }
    };
    add(true);
    menu->addSeparator();
    add(false);
    menu->popup(anchor.mapToGlobal(QPoint(0, anchor.height())));
}

} // namespace quillane
