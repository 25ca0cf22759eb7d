// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "AccessibleField.hpp"

#include <QTextBlock>

namespace {

class AccessibleField : public QAccessibleWidget,
                        public QAccessibleTextInterface,
                        public QAccessibleEditableTextInterface {
public:
    explicit AccessibleField(Field& field)
        : QAccessibleWidget(&field, field.traits().webContent ? QAccessible::WebDocument : QAccessible::EditableText),
          field_(field) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        switch (type) {
        case QAccessible::TextInterface:
            return field_.traits().hidesCursor ? nullptr : static_cast<QAccessibleTextInterface*>(this);
        case QAccessible::EditableTextInterface:
            return field_.isReadOnly() ? nullptr : static_cast<QAccessibleEditableTextInterface*>(this);
        default:
            return QAccessibleWidget::interface_cast(type);
        }
    }

    [[nodiscard]] QAccessible::State state() const override {
        auto state = QAccessibleWidget::state();
        state.editable = !field_.isReadOnly();
        state.readOnly = field_.isReadOnly();
        state.multiLine = field_.traits().multiLine;
        state.selectableText = true;
        return state;
    }

    [[nodiscard]] int childCount() const override { return 0; } // the viewport is irrelevant

    [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }

    [[nodiscard]] QStringList actionNames() const override {
        return field_.traits().hidesMenu ? QStringList{setFocusAction()}
                                         : QStringList{showMenuAction(), setFocusAction()};
    }

    void doAction(const QString& name) override {
        if (name == showMenuAction()) {
            field_.traits().showMenu();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

    void selection(int index, int* start, int* end) const override {
        const auto cursor = field_.textCursor();
        *start = index == 0 ? cursor.selectionStart() : 0;
        *end = index == 0 ? cursor.selectionEnd() : 0;
    }

    [[nodiscard]] int selectionCount() const override { return field_.textCursor().hasSelection() ? 1 : 0; }

    void addSelection(int start, int end) override { setSelection(0, start, end); }

    void removeSelection(int) override { setCursorPosition(cursorPosition()); }

    void setSelection(int, int start, int end) override {
        if (!field_.traits().keepsSelection) {
            auto cursor = field_.textCursor();
            cursor.setPosition(start);
            cursor.setPosition(end, QTextCursor::KeepAnchor);
            field_.setTextCursor(cursor);
        }
    }

    [[nodiscard]] int cursorPosition() const override { return field_.textCursor().position(); }

    void setCursorPosition(int position) override { setSelection(0, position, position); }

    [[nodiscard]] QString text(int start, int end) const override {
        return field_.toPlainText().mid(start, end < 0 ? -1 : end - start);
    }

    using QAccessibleWidget::text;

    [[nodiscard]] int characterCount() const override { return static_cast<int>(field_.toPlainText().size()); }

    [[nodiscard]] QRect characterRect(int) const override { return field_.cursorRect(); }

    [[nodiscard]] int offsetAtPoint(const QPoint& point) const override {
        return field_.cursorForPosition(field_.mapFromGlobal(point)).position();
    }

    void scrollToSubstring(int, int) override { field_.ensureCursorVisible(); }

    QString attributes(int, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }

    void deleteText(int start, int end) override { replaceText(start, end, {}); }

    void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }

    void replaceText(int start, int end, const QString& text) override {
        QTextCursor cursor(field_.document());
        cursor.setPosition(start);
        cursor.setPosition(end, QTextCursor::KeepAnchor);
        cursor.insertText(text);
    }

private:
    Field& field_;
};

class AccessibleMenuOwner : public QAccessibleWidget {
public:
    explicit AccessibleMenuOwner(MenuOwner& window)
        : QAccessibleWidget(&window, QAccessible::Window), window_(window) {}

    [[nodiscard]] int childCount() const override { return QAccessibleWidget::childCount() + (isMenuOpen() ? 1 : 0); }

    [[nodiscard]] QAccessibleInterface* child(int index) const override {
        const bool isMenu = isMenuOpen() && index == QAccessibleWidget::childCount();
        return isMenu ? QAccessible::queryAccessibleInterface(window_.menu()) : QAccessibleWidget::child(index);
    }

private:
    [[nodiscard]] bool isMenuOpen() const { return window_.menu() != nullptr && window_.menu()->isVisible(); }

    MenuOwner& window_;
};

} // namespace

Field::Field(const QString& name, Traits traits) : traits_(std::move(traits)) {
    setObjectName(name);
    setTabChangesFocus(true);
}

QAccessibleInterface* describeField(const QString&, QObject* object) {
    if (auto* field = dynamic_cast<Field*>(object)) {
        return new AccessibleField(*field); // Qt owns it
    }
    if (auto* window = dynamic_cast<MenuOwner*>(object)) {
        return new AccessibleMenuOwner(*window);
    }
    auto* page = dynamic_cast<WebPage*>(object);
    return page != nullptr ? new QAccessibleWidget(page, QAccessible::WebDocument) : nullptr;
}
