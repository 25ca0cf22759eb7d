// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/AccessibleHistory.hpp"

#include "clipboard/panel/ClipboardList.hpp"

#include <QAccessibleWidget>
#include <QHash>
#include <QPersistentModelIndex>

namespace quillane {

namespace {

class AccessibleRow final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    AccessibleRow(ClipboardList& list, const QModelIndex& index) : list_(list), index_(index) {}

    [[nodiscard]] bool isValid() const override { return index_.isValid(); }

    [[nodiscard]] QObject* object() const override { return nullptr; }

    [[nodiscard]] QWindow* window() const override { return list_.window()->windowHandle(); }

    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }

    [[nodiscard]] QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&list_);
    }

    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }

    [[nodiscard]] int childCount() const override { return 0; }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? index_.data(Qt::AccessibleTextRole).toString() : QString();
    }

    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}

    [[nodiscard]] QRect rect() const override {
        const auto rect = list_.visualRect(index_);
        return rect.isEmpty() ? QRect() : QRect(list_.viewport()->mapToGlobal(rect.topLeft()), rect.size());
    }

    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::ListItem; }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.selectable = 1;
        state.focusable = 1;
        state.selected = list_.selectionModel()->isSelected(index_) ? 1U : 0U;
        state.focused = list_.currentIndex() == index_ ? 1U : 0U;
        state.offscreen = list_.viewport()->rect().intersects(list_.visualRect(index_)) ? 0U : 1U;
        state.invisible = list_.isVisible() ? 0U : 1U;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }

    [[nodiscard]] QStringList actionNames() const override { return {pressAction(), showMenuAction()}; }

    [[nodiscard]] QString localizedActionName(const QString& name) const override {
        return name == showMenuAction() ? list_.menuName : list_.pressName;
    }

    void doAction(const QString& name) override {
        const auto& action = name == showMenuAction() ? list_.onMenu : list_.onPress;
        if (index_.isValid() && action && actionNames().contains(name)) {
            action(index_.row());
        }
    }

    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

private:
    ClipboardList& list_;
    QPersistentModelIndex index_;
};

class AccessibleList final : public QAccessibleWidget {
public:
    explicit AccessibleList(ClipboardList& list) : QAccessibleWidget(&list, QAccessible::List), list_(list) {
        const auto forgetRows = [this] { forget(); };
        changes_ = {QObject::connect(list.model(), &QAbstractItemModel::modelReset, &list, forgetRows)};
    }

    ~AccessibleList() override {
        QObject::disconnect(changes_);
        forget();
    }

    AccessibleList(const AccessibleList&) = delete;
    AccessibleList& operator=(const AccessibleList&) = delete;

    [[nodiscard]] int childCount() const override { return list_.model()->rowCount(); }

    [[nodiscard]] QAccessibleInterface* child(int row) const override {
        const auto index = list_.model()->index(row, 0);
        if (!index.isValid()) {
            return nullptr;
        }
        if (const auto found = rows_.constFind(row); found != rows_.constEnd()) {
            return QAccessible::accessibleInterface(*found);
        }
        auto* made = new AccessibleRow(list_, index); // owned by Qt's register, until it is forgotten
        rows_.insert(row, QAccessible::registerAccessibleInterface(made));
        return made;
    }

    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        return child(list_.indexAt(list_.viewport()->mapFromGlobal(QPoint(x, y))).row());
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        for (auto row = rows_.constBegin(); row != rows_.constEnd(); ++row) {
            if (QAccessible::accessibleInterface(row.value()) == child) {
                return row.key();
            }
        }
        return -1;
    }

    [[nodiscard]] QAccessibleInterface* focusChild() const override { return child(list_.currentIndex().row()); }

private:
    void forget() {
        for (const auto id : rows_) {
            QAccessible::deleteAccessibleInterface(id);
        }
        rows_.clear();
    }

    ClipboardList& list_;
    QMetaObject::Connection changes_;
    mutable QHash<int, QAccessible::Id> rows_;
};

} // namespace

QAccessibleInterface* accessibleHistory(const QString& /*className*/, QObject* object) {
    auto* list = qobject_cast<ClipboardList*>(object);
    return list != nullptr ? new AccessibleList(*list) : nullptr; // owned by Qt
}

} // namespace quillane
