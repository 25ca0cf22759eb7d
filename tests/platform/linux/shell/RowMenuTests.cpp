// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/shell/RowMenu.hpp"

#include "contracts/StatusItemContract.hpp"
#include "platform/linux/shell/TrayStatusItem.hpp"

#include <QApplication>

#include <gtest/gtest.h>

namespace quillane {
namespace {

using Kind = MenuRow::Kind;

MenuRow item(
    std::string title, std::function<void()> action = [] {}) {
    MenuRow row;
    row.title = std::move(title);
    row.action = std::move(action);
    return row;
}

MenuRow separator() {
    MenuRow row;
    row.kind = Kind::separator;
    return row;
}

class RowMenuTest : public ::testing::Test {
protected:
    void set(std::vector<MenuRow> rows) { menu.setRows(std::move(rows), LayoutDirection::leftToRight); }

private:
    bool offscreen_ = qputenv("QT_QPA_PLATFORM", "offscreen");
    int argc_ = 1;
    std::string name_ = "tests";
    char* argv_ = name_.data();
    QApplication application_{argc_, &argv_};

protected:
    RowMenu menu;
};

TEST_F(RowMenuTest, DrawsRowsInOrder) {
    auto header = item("Header");
    header.kind = Kind::header;
    auto checked = item("Checked");
    checked.checkable = checked.checked = true;
    auto off = item("Off");
    off.enabled = false;
    set({header, separator(), checked, off});
    const auto actions = menu.actions();
    ASSERT_EQ(actions.size(), 4);
    EXPECT_EQ(actions[0]->text(), "Header");
    EXPECT_FALSE(actions[0]->isEnabled());
    EXPECT_TRUE(actions[1]->isSeparator());
    EXPECT_TRUE(actions[2]->isCheckable());
    EXPECT_TRUE(actions[2]->isChecked());
    EXPECT_FALSE(actions[3]->isEnabled());
}

TEST_F(RowMenuTest, AnAmpersandIsNotAMnemonic) {
    set({item("Cut & paste")});
    EXPECT_EQ(menu.actions()[0]->text(), "Cut && paste");
}

TEST_F(RowMenuTest, RowsOfTheSameKindsAreChangedInPlace) {
    set({item("One"), separator(), item("Two")});
    const auto before = menu.actions();
    set({item("Uno"), separator(), item("Dos")});
    EXPECT_EQ(menu.actions(), before);
    EXPECT_EQ(before[2]->text(), "Dos");
}

TEST_F(RowMenuTest, OtherKindsRebuildTheMenu) {
    set({item("One")});
    set({separator(), item("One")});
    EXPECT_EQ(menu.actions().size(), 2);
}

TEST_F(RowMenuTest, ARowRunsItsLatestActionOnce) {
    int first = 0;
    int second = 0;
    set({item("Row", [&] { ++first; })});
    set({item("Row", [&] { ++second; })});
    menu.actions()[0]->trigger();
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST_F(RowMenuTest, AnActionMayReplaceTheRows) {
    int runs = 0;
    set({item("Row", [&] {
        set({separator()});
        ++runs;
    })});
    menu.actions()[0]->trigger();
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(menu.actions()[0]->isSeparator());
}

TEST_F(RowMenuTest, MirrorsForRightToLeftLanguages) {
    menu.setRows({item("שורה")}, LayoutDirection::rightToLeft);
    EXPECT_EQ(menu.layoutDirection(), Qt::RightToLeft);
}

TEST_F(RowMenuTest, ShowsTheKeyOfARow) {
    auto row = item("Settings");
    row.keyEquivalent = ",";
    set({row});
    EXPECT_EQ(menu.actions()[0]->shortcut(), QKeySequence("Ctrl+,"));
}

TEST_F(RowMenuTest, IconsAreDrawnWhenTheMenuFirstOpensAndFollowTheirRow) {
    auto row = item("Pause");
    row.icon = MenuRow::Icon::symbol;
    row.symbol = "pause.circle";
    set({row});
    EXPECT_TRUE(menu.actions()[0]->icon().isNull());
    menu.popup(QPoint(0, 0));
    const auto pause = menu.actions()[0]->icon().pixmap(24).toImage();
    EXPECT_FALSE(pause.isNull());
    row.symbol = "play.circle";
    set({row});
    EXPECT_NE(menu.actions()[0]->icon().pixmap(24).toImage(), pause);
    EXPECT_TRUE(menu.isVisible());
}

/// The tray item, and its menu as Qt's list of top-level windows knows it.
class TrayStatusItemDriver {
public:
    StatusItem& item() { return item_; }

    [[nodiscard]] std::vector<std::string> titles() const {
        std::vector<std::string> result;
        for (const auto* action : menu().actions()) {
            result.push_back(action->isSeparator() ? std::string() : action->text().toStdString());
        }
        return result;
    }

    [[nodiscard]] bool isChecked(const std::string& title) const { return find(title)->isChecked(); }

    void choose(const std::string& title) { find(title)->trigger(); }

    /// There is no session bus here, so nobody can.
    static void refuseNotices() {}

    static void waitForAnswers() { QCoreApplication::processEvents(); }

private:
    [[nodiscard]] static QMenu& menu() {
        for (auto* widget : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<QMenu*>(widget)) {
                return *found;
            }
        }
        throw std::logic_error("The status item has no menu");
    }

    [[nodiscard]] static QAction* find(const std::string& title) {
        for (auto* action : menu().actions()) {
            if (action->text().toStdString() == title) {
                return action;
            }
        }
        throw std::logic_error("No row is called " + title);
    }

    bool offscreen_ = qputenv("QT_QPA_PLATFORM", "offscreen");
    bool hasNoBus_ = qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    int argc_ = 1;
    std::string name_ = "tests";
    char* argv_ = name_.data();
    QApplication application_{argc_, &argv_};
    TrayStatusItem item_;
};

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(Tray, StatusItemContract, TrayStatusItemDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Tray, StatusItemNoticeContract, TrayStatusItemDriver);

} // namespace testing
} // namespace quillane
