// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/shell/WindowKeysApplicationMenu.hpp"

#include "contracts/ApplicationMenuContract.hpp"
#include "platform/linux/keyboard/LatinKeyPlaces.hpp"
#include "support/OffscreenApplication.hpp"

#include <QKeyEvent>
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

    [[nodiscard]] static std::optional<LayoutDirection> direction() { return std::nullopt; }

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

/// In a layout where the key of the letter W has the apostrophe, as in Hebrew.
TEST_F(WindowKeysApplicationMenuTest, KeyOfALayoutWithoutLatinLettersIsKnownByItsLatinLetter) {
    constexpr std::uint32_t w = 25;
    driver.menu() = std::make_unique<WindowKeysApplicationMenu>(
        [](std::uint32_t key, char32_t) { return key == w ? std::optional('w') : std::nullopt; });
    ApplicationMenuRow close;
    close.standard = StandardCommand::close;
    install({close});
    const auto press = [&](std::uint32_t key, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Apostrophe, modifiers, key, 0, 0, "'");
        QApplication::sendEvent(&driver.field(), &event);
    };
    press(w, Qt::NoModifier);
    press(w + 1, Qt::ControlModifier);
    EXPECT_TRUE(driver.isWindowOpen());
    EXPECT_EQ(driver.field().text(), "'");
    press(w, Qt::ControlModifier);
    EXPECT_FALSE(driver.isWindowOpen());
}

/// Where the layout is not known, as on Wayland: by what Qt says of the event alone.
TEST_F(WindowKeysApplicationMenuTest, KeyOfAnUnknownLayoutIsKnownByItsPlaceUnlessItsSymbolIsLatin) {
    struct Case {
        const char* layout;
        std::uint32_t key;
        char32_t symbol;
        bool closes;
    };

    driver.menu() = std::make_unique<WindowKeysApplicationMenu>(latinKeyBySymbol);
    ApplicationMenuRow close;
    close.standard = StandardCommand::close;
    install({close});
    for (const auto& [layout, key, symbol, closes] :
         {Case{"Hebrew", 25, U'\'', true}, Case{"Arabic", 25, U'ص', true}, Case{"Russian", 25, U'Ц', true},
          Case{"French", 25, U'Z', false}, Case{"French", 52, U'W', true}, Case{"Dvorak", 25, U',', false},
          Case{"Dvorak", 24, U'\'', false}, Case{"Hebrew", 24, U'/', false}, Case{"Hebrew", 26, U'ק', false},
          Case{"any", 67, Qt::Key_F1, false}}) {
        driver.field().window()->show();
        QKeyEvent event(QEvent::KeyPress, static_cast<int>(symbol), Qt::ControlModifier, key, 0, 0);
        QApplication::sendEvent(&driver.field(), &event);
        EXPECT_EQ(driver.isWindowOpen(), !closes) << layout << ' ' << key;
    }
}

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, ApplicationMenuContract, WindowKeysDriver);
} // namespace testing
} // namespace quillane
