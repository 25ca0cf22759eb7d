// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/WindowKeysApplicationMenu.hpp"

#include "fakes/OffscreenApplication.hpp"
#include "platform/ApplicationMenuContract.hpp"

#include <QLineEdit>
#include <QTest>
#include <QWidget>

namespace quillane {
namespace {

/// A window with a text field that has the focus.
class WindowKeysDriver {
public:
    WindowKeysDriver() {
        window_.show();
        window_.activateWindow();
        field_.setFocus();
        EXPECT_TRUE(waitUntil([&] { return field_.hasFocus(); }));
    }

    std::unique_ptr<ApplicationMenu>& menu() { return menu_; }

    void press(char key) { QTest::keyClick(&field_, key, Qt::ControlModifier); }

    [[nodiscard]] bool isWindowOpen() const { return window_.isVisible(); }

    [[nodiscard]] static LayoutDirection direction() {
        return QApplication::isRightToLeft() ? LayoutDirection::rightToLeft : LayoutDirection::leftToRight;
    }

    static bool waitUntil(const std::function<bool()>& condition) { return QTest::qWaitFor(condition); }

    QLineEdit& field() { return field_; }

private:
    fakes::OffscreenApplication application_;
    QWidget window_;
    QLineEdit field_{&window_};
    std::unique_ptr<ApplicationMenu> menu_ = std::make_unique<WindowKeysApplicationMenu>();
};

class WindowKeysApplicationMenuTest : public testing::ApplicationMenuContract<WindowKeysDriver> {};

TEST_F(WindowKeysApplicationMenuTest, EditingKeysAreTheTextFields) {
    ApplicationMenuRow selectAll;
    selectAll.standard = StandardCommand::selectAll;
    install({selectAll});
    driver.field().setText("text");
    driver.press('a');
    EXPECT_EQ(driver.field().selectedText(), "text");
}

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, ApplicationMenuContract, WindowKeysDriver);
} // namespace testing
} // namespace quillane
