// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/shell/WindowKeysApplicationMenu.hpp"

#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QWidget>

#include <utility>

namespace quillane {

namespace {

/// The key of a row in this program's windows: its own with Control, or the usual one of a window command. Disabled
/// rows have none, and neither have editing commands, because text widgets have their own.
QKeySequence keyOf(const ApplicationMenuRow& row) {
    if (row.standard == StandardCommand::close) {
        return QKeySequence(Qt::CTRL | Qt::Key_W);
    }
    if (row.standard || row.row.keyEquivalent.empty() || !row.row.enabled) {
        return {};
    }
    return QKeySequence(QStringLiteral("Ctrl+") + QString::fromStdString(row.row.keyEquivalent));
}

} // namespace

class WindowKeysApplicationMenu::Keys : public QObject {
public:
    explicit Keys(LatinKey latinKey) : latinKey_(std::move(latinKey)) { qApp->installEventFilter(this); }

    void setMenus(std::vector<ApplicationSubmenu> menus) { menus_ = std::move(menus); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress) {
            return false;
        }
        auto* widget = qobject_cast<QWidget*>(watched);
        const auto* row = widget ? find(*static_cast<QKeyEvent*>(event)) : nullptr;
        if (!row) {
            return false;
        }
        event->accept(); // an accepted shortcut override arrives again as a key press
        if (event->type() == QEvent::KeyPress) {
            run(*row, *widget);
        }
        return true;
    }

private:
    [[nodiscard]] const ApplicationMenuRow* find(const QKeyEvent& event) const {
        if (const auto* row = find(QKeySequence(event.keyCombination()))) {
            return row;
        }
        const auto latin =
            latinKey_ ? latinKey_(event.nativeScanCode(), static_cast<char32_t>(event.key())) : std::nullopt;
        return latin ? find(QKeySequence(
                           QKeyCombination(event.modifiers(), static_cast<Qt::Key>(QChar(*latin).toUpper().unicode()))))
                     : nullptr;
    }

    [[nodiscard]] const ApplicationMenuRow* find(const QKeySequence& pressed) const {
        for (const auto& menu : menus_) {
            for (const auto& row : menu.rows) {
                if (const auto key = keyOf(row); !key.isEmpty() && key == pressed) {
                    return &row;
                }
            }
        }
        return nullptr;
    }

    static void run(const ApplicationMenuRow& row, QWidget& widget) {
        if (row.standard == StandardCommand::close) {
            widget.window()->close();
        } else if (const auto action = row.row.action) { // a copy: the action may install other menus
            action();
        }
    }

    LatinKey latinKey_;
    std::vector<ApplicationSubmenu> menus_;
};

WindowKeysApplicationMenu::WindowKeysApplicationMenu(LatinKey latinKey)
    : keys_(std::make_unique<Keys>(std::move(latinKey))) {}

WindowKeysApplicationMenu::~WindowKeysApplicationMenu() = default;

void WindowKeysApplicationMenu::install(std::vector<ApplicationSubmenu> menus, LayoutDirection /*direction*/) {
    keys_->setMenus(std::move(menus));
}

} // namespace quillane
