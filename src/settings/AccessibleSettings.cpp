// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "settings/AccessibleSettings.hpp"

#include "settings/PageSelector.hpp"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QComboBox>

namespace quillane {

namespace {

class AccessiblePage final : public QAccessibleWidget {
public:
    explicit AccessiblePage(PageButton& button) : QAccessibleWidget(&button, QAccessible::PageTab), button_(button) {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? button_.text() : QAccessibleWidget::text(kind);
    }

    [[nodiscard]] QAccessible::State state() const override {
        auto state = QAccessibleWidget::state();
        state.selectable = 1;
        state.selected = button_.isChecked() ? 1 : 0;
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }

    void doAction(const QString& action) override {
        if (action == pressAction()) {
            button_.click();
        } else {
            QAccessibleWidget::doAction(action);
        }
    }

private:
    PageButton& button_;
};

/// Its text is read-only and has neither a cursor nor a selection.
class AccessiblePicker final : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit AccessiblePicker(QComboBox& box) : QAccessibleWidget(&box, QAccessible::ComboBox), box_(box) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? box_.currentText() : QAccessibleWidget::text(kind);
    }

    [[nodiscard]] QAccessible::State state() const override {
        auto state = QAccessibleWidget::state();
        state.hasPopup = 1;
        state.expandable = 1;
        state.expanded = box_.view()->isVisible() ? 1 : 0;
        return state;
    }

    [[nodiscard]] int childCount() const override { return 1; }

    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(box_.view()) : nullptr;
    }

    [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override {
        return state().expanded != 0 && child(0)->rect().contains(x, y) ? child(0) : nullptr;
    }

    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
        return child != nullptr && child->object() == box_.view() ? 0 : -1;
    }

    [[nodiscard]] QStringList actionNames() const override { return {showMenuAction(), pressAction()}; }

    void doAction(const QString& action) override {
        if (action != showMenuAction() && action != pressAction()) {
            QAccessibleWidget::doAction(action);
        } else if (box_.view()->isVisible()) {
            box_.hidePopup();
        } else {
            box_.showPopup();
        }
    }

    void selection(int /*index*/, int* start, int* end) const override { *start = *end = 0; }

    [[nodiscard]] int selectionCount() const override { return 0; }

    void addSelection(int /*start*/, int /*end*/) override {}

    void removeSelection(int /*index*/) override {}

    void setSelection(int /*index*/, int /*start*/, int /*end*/) override {}

    [[nodiscard]] int cursorPosition() const override { return 0; }

    void setCursorPosition(int /*position*/) override {}

    [[nodiscard]] QString text(int start, int end) const override { return box_.currentText().mid(start, end - start); }

    [[nodiscard]] int characterCount() const override { return static_cast<int>(box_.currentText().size()); }

    [[nodiscard]] QRect characterRect(int /*offset*/) const override { return {}; }

    [[nodiscard]] int offsetAtPoint(const QPoint& /*point*/) const override { return -1; }

    void scrollToSubstring(int /*start*/, int /*end*/) override {}

    [[nodiscard]] QString attributes(int /*offset*/, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }

private:
    QComboBox& box_;
};

} // namespace

void nameList(QComboBox& list, const QString& name) {
    list.setAccessibleName(name);
    list.view()->setAccessibleName(name);
}

QAccessibleInterface* accessibleSettings(const QString& /*className*/, QObject* object) {
    if (auto* page = qobject_cast<PageButton*>(object)) {
        return new AccessiblePage(*page); // QAccessible owns it
    }
    if (auto* selector = qobject_cast<PageSelector*>(object)) {
        return new QAccessibleWidget(selector, QAccessible::PageTabList);
    }
    if (auto* box = qobject_cast<QComboBox*>(object); box != nullptr && !box->isEditable()) {
        return new AccessiblePicker(*box);
    }
    return nullptr;
}

} // namespace quillane
