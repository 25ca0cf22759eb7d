// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/HistoryPanelTest.hpp"

#include "support/KnownTexts.hpp"
#include "views/InterfaceLanguage.hpp"

#include <QAccessible>
#include <QCursor>
#include <QHelpEvent>
#include <QScreen>
#include <QScrollBar>

#include <cstdlib>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::SizeIs;
namespace texts = core::texts;

class HistoryPanelWindowTest : public HistoryPanelTest {
protected:
    /// Without the marks that keep the names of keys in order.
    [[nodiscard]] QString footer() {
        return find<QLabel>("footerText").text().remove(QChar(0x2066)).remove(QChar(0x2069));
    }
};

// Opening and closing

TEST_F(HistoryPanelWindowTest, IsASearchPanelThatOpensWithTheKeysInAnEmptyField) {
    copyThree();
    open();
    EXPECT_THAT(windowTraits.panels, ElementsAre(std::pair<QWidget*, PanelKind>{&window(), PanelKind::search}));
    EXPECT_TRUE(window().isVisible());
    EXPECT_TRUE(field().hasFocus());
    press(Qt::Key_S);
    EXPECT_EQ(panel.query(), "s");
    panel.close();
    EXPECT_FALSE(window().isVisible());
    open();
    EXPECT_EQ(field().text(), QString());
    EXPECT_EQ(list().currentIndex().row(), 0);
}

TEST_F(HistoryPanelWindowTest, NoPartLeavesAStripForAHiddenTitleBar) {
    copyThree();
    open();
    const auto& shown = window();
    EXPECT_FALSE(shown.testAttribute(Qt::WA_ContentsMarginsRespectsSafeArea));
    for (const auto* part : shown.findChildren<QWidget*>()) {
        if (!part->isWindow()) {
            EXPECT_FALSE(part->testAttribute(Qt::WA_ContentsMarginsRespectsSafeArea))
                << part->metaObject()->className();
        }
    }
}

TEST_F(HistoryPanelWindowTest, HidesNoMatterHowItIsClosed) {
    copyThree();
    open();
    press(Qt::Key_Escape);
    EXPECT_FALSE(panel.isVisible());
    EXPECT_FALSE(window().isVisible());
    open();
    window().close(); // as a click elsewhere does to a pop-up
    EXPECT_FALSE(panel.isVisible());
    open();
    press(Qt::Key_V, Qt::MetaModifier | Qt::ShiftModifier);
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(HistoryPanelWindowTest, StaysOnItsScreenWithAMargin) {
    const auto screen = QGuiApplication::primaryScreen()->availableGeometry();
    QCursor::setPos(screen.bottomRight());
    open();
    EXPECT_EQ(window().geometry().right(), screen.right() - 8);
    EXPECT_EQ(window().geometry().bottom(), screen.bottom() - 8);
    panel.close();
    QCursor::setPos(screen.topLeft() + QPoint(100, 0));
    open();
    EXPECT_EQ(window().geometry().topLeft(), screen.topLeft() + QPoint(64, 12));
    panel.close();
    auto options = manager.options();
    options.popupAtCursor = false;
    manager.setOptions(options);
    open();
    EXPECT_LE((window().geometry().center() - screen.center()).manhattanLength(), 2);
}

TEST_F(HistoryPanelWindowTest, LetsGoOfEverythingWhenItCloses) {
    copyThree();
    open();
    EXPECT_EQ(rows(), 3);
    panel.close();
    EXPECT_EQ(rows(), 0);
}

// Keys

TEST_F(HistoryPanelWindowTest, ArrowsMoveTheSelectionWhileTheFieldHasTheKeys) {
    copyThree();
    open();
    press(Qt::Key_Down);
    EXPECT_EQ(list().currentIndex().row(), 1);
    EXPECT_TRUE(field().hasFocus());
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(list().currentIndex().row(), 0);
}

TEST_F(HistoryPanelWindowTest, ReturnPastesTheSelectedEntry) {
    copyThree();
    open();
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_FALSE(panel.isVisible());
    EXPECT_EQ(pasted(), "second");
    queue.advance(50ms);
    EXPECT_THAT(keyEvents.posted, SizeIs(1));
}

TEST_F(HistoryPanelWindowTest, OptionReturnOnlyCopiesAndDigitsChooseByPlace) {
    copyThree();
    open();
    press(Qt::Key_5, Qt::ControlModifier);
    EXPECT_TRUE(panel.isVisible());
    QKeyEvent three(QEvent::KeyPress, 0x0663, Qt::ControlModifier); // the Arabic digit
    QCoreApplication::sendEvent(&field(), &three);
    EXPECT_EQ(pasted(), "first");
    queue.advance(50ms);
    EXPECT_THAT(keyEvents.posted, SizeIs(1));
    open();
    press(Qt::Key_Enter, Qt::AltModifier | Qt::KeypadModifier);
    EXPECT_FALSE(panel.isVisible());
    queue.advance(50ms);
    EXPECT_THAT(keyEvents.posted, SizeIs(1));
}

TEST_F(HistoryPanelWindowTest, CommandDeleteDeletesAndPlainDeleteDoesNot) {
    copyThree();
    open();
    press(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(list().currentIndex().row(), 0);
    QTest::keyClicks(&field(), "fir");
    press(Qt::Key_Backspace);
    EXPECT_EQ(panel.query(), "fi");
    EXPECT_EQ(rows(), 1);
}

TEST_F(HistoryPanelWindowTest, ButtonsArePressedByKeysAndLettersStillSearch) {
    copyThree();
    open();
    auto& settings = find<QToolButton>("settings");
    settings.setFocus();
    QTest::keyClick(&settings, Qt::Key_T);
    settle();
    EXPECT_EQ(panel.query(), "t");
    EXPECT_TRUE(field().hasFocus());
    settings.setFocus();
    QTest::keyClick(&settings, Qt::Key_Return);
    settle();
    EXPECT_EQ(settingsOpened, 1);
    EXPECT_FALSE(panel.isVisible());
}

// Searching

TEST_F(HistoryPanelWindowTest, TypingFiltersAtOnceAndTheSelectionFollows) {
    copyThree();
    open();
    press(Qt::Key_Down);
    QTest::keyClicks(&field(), "thi");
    settle();
    EXPECT_EQ(rows(), 1);
    EXPECT_EQ(list().currentIndex().row(), 0);
    EXPECT_TRUE(nameOfRow(0).contains("third"));
    find<QToolButton>("clear").click();
    EXPECT_EQ(rows(), 3);
    EXPECT_TRUE(field().hasFocus());
}

TEST_F(HistoryPanelWindowTest, TheFieldRunsInTheDirectionOfTypedText) {
    copyThree();
    open();
    EXPECT_EQ(field().layoutDirection(), Qt::LeftToRight);
    field().setText(QStringLiteral("שלום"));
    EXPECT_EQ(field().layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(find<QFrame>("searchBox").layoutDirection(), Qt::LeftToRight);
    preferences.choose(core::AppLanguage::arabic);
    field().setText(QStringLiteral("word"));
    EXPECT_EQ(field().layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(find<QFrame>("searchBox").layoutDirection(), Qt::RightToLeft);
}

TEST_F(HistoryPanelWindowTest, TheCaretOfTheEmptyFieldStandsWhereTheTextBegins) {
    copyThree();
    for (const auto language : core::allLanguages) {
        preferences.choose(language);
        open();
        static_cast<void>(field().grab()); // which places the caret
        const auto caret = field().inputMethodQuery(Qt::ImCursorRectangle).toRect().center().x();
        EXPECT_EQ(caret > field().width() / 2, core::isRTL(language)) << caret;
        panel.close();
    }
}

TEST_F(HistoryPanelWindowTest, TheHelpIsShownByMouseBesideItsButton) {
    copyThree();
    open();
    auto& help = find<QToolButton>("help");
    auto& card = find<QLabel>("helpCard");
    QTest::mouseClick(&help, Qt::LeftButton);
    settle();
    EXPECT_TRUE(card.isVisible());
    EXPECT_FALSE(card.geometry().intersects(QRect(help.mapToGlobal(QPoint(0, 0)), help.size())));
    EXPECT_TRUE(help.screen()->availableGeometry().contains(card.geometry()));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&help, &leave);
    EXPECT_FALSE(card.isVisible());
    QHelpEvent hover(QEvent::ToolTip, help.rect().center(), help.mapToGlobal(help.rect().center()));
    QCoreApplication::sendEvent(&help, &hover);
    EXPECT_TRUE(card.isVisible());
    press(Qt::Key_Down);
    EXPECT_FALSE(card.isVisible());
    help.setFocus();
    QTest::keyClick(&help, Qt::Key_Return);
    EXPECT_TRUE(card.isVisible());
    panel.close();
    EXPECT_FALSE(card.isVisible());
}

TEST_F(HistoryPanelWindowTest, TheQuestionMarkIsTurnedInArabic) {
    open();
    const auto drawn = [this](core::AppLanguage language) {
        preferences.choose(language);
        return find<QToolButton>("help").icon().pixmap(32, 32).toImage();
    };
    const auto english = drawn(core::AppLanguage::english);
    EXPECT_EQ(drawn(core::AppLanguage::hebrew), english);
    const auto arabic = drawn(core::AppLanguage::arabic);
    EXPECT_NE(arabic, english);
    const auto mirrored = english.mirrored(true, false);
    int differing = 0;
    for (int y = 0; y < arabic.height(); ++y) {
        for (int x = 0; x < arabic.width(); ++x) {
            differing += std::abs(arabic.pixelColor(x, y).alpha() - mirrored.pixelColor(x, y).alpha()) > 40 ? 1 : 0;
        }
    }
    EXPECT_LE(differing, 10);
}

TEST_F(HistoryPanelWindowTest, EveryTextIsOfTheTable) {
    InterfaceLanguage interface(preferences);
    copyThree();
    for (const auto language : core::allLanguages) {
        preferences.choose(language);
        fakes::KnownTexts known(language);
        open();
        const auto check = [&] {
            for (auto* widget : QApplication::topLevelWidgets()) {
                if (widget->isVisible()) {
                    known.checkWindow(*widget);
                }
            }
        };
        find<QToolButton>("help").click();
        check();
        known.checkMenu(openMenu(1));
        find<QMenu>("rowMenu").close();
        settle();
        field().setText("none of these");
        settle();
        check();
        EXPECT_GT(known.checked(), 40);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        panel.close();
    }
}

TEST_F(HistoryPanelWindowTest, ACopyWhileItIsOpenAppears) {
    copyThree();
    open();
    copyText("fourth");
    EXPECT_EQ(rows(), 4);
    EXPECT_TRUE(nameOfRow(0).contains("fourth"));
    EXPECT_EQ(list().currentIndex().row(), 1); // the selection stays
}

TEST_F(HistoryPanelWindowTest, SaysWhyThereIsNothing) {
    open();
    EXPECT_FALSE(list().isVisible());
    EXPECT_EQ(find<QLabel>("emptyTitle").text(), "Your next copy will appear here");
    EXPECT_EQ(find<QLabel>("emptyText").text(), "Text, images and files in one place.");
    copyText("one");
    EXPECT_TRUE(list().isVisible());
    QTest::keyClicks(&field(), "zzz");
    settle();
    EXPECT_FALSE(list().isVisible());
    EXPECT_EQ(find<QLabel>("emptyTitle").text(), "No matching items");
    EXPECT_FALSE(find<QLabel>("emptyText").isVisible());
}

TEST_F(HistoryPanelWindowTest, TheFooterNamesTheKeysOrReportsTheLastChoice) {
    permissions.revoke(core::MacPermission::accessibility);
    copyThree();
    open();
    EXPECT_EQ(footer(), "Enter to paste · ⌥Enter to copy · ⇧Enter for plain text");
    press(Qt::Key_Return);
    EXPECT_EQ(footer().toStdString(), core::LocalizedText(texts::itemCopiedAllowAccessibility.on(platform.desktop))
                                          .rendered(core::AppLanguage::english));
}

// Languages, appearance, screen readers

TEST_F(HistoryPanelWindowTest, EverythingIsMirroredInHebrewAndArabicAtOnce) {
    copyThree();
    open();
    const auto leftOfSettings = [&] { return find<QToolButton>("settings").geometry().left(); };
    EXPECT_GT(leftOfSettings(), window().width() / 2);
    for (const auto language : {core::AppLanguage::hebrew, core::AppLanguage::arabic}) {
        preferences.choose(language);
        settle();
        EXPECT_EQ(window().view().layoutDirection(), Qt::RightToLeft);
        EXPECT_LT(leftOfSettings(), window().width() / 2);
        EXPECT_EQ(footer().toStdString(),
                  core::LocalizedText(texts::panelKeys.on(platform.desktop)).rendered(language));
    }
}

TEST_F(HistoryPanelWindowTest, EveryControlHasANameInEveryLanguage) {
    copyThree();
    open();
    for (const auto language : core::allLanguages) {
        preferences.choose(language);
        settle();
        EXPECT_FALSE(field().accessibleName().isEmpty());
        EXPECT_FALSE(list().accessibleName().isEmpty());
        for (const auto* button : window().findChildren<QToolButton*>()) {
            EXPECT_FALSE(button->accessibleName().isEmpty()) << button->objectName().toStdString();
        }
    }
}

TEST_F(HistoryPanelWindowTest, RowsSayTheirKindBeginningAndSource) {
    copyText("  some\n\ttext  ");
    copyImage(png({4, 4}));
    copyFiles({"file:///nowhere/a.txt", "file:///nowhere/b.txt"});
    open();
    load();
    EXPECT_EQ(nameOfRow(2), QStringLiteral("Text, \u2068some text\u2069, From Editor"));
    EXPECT_EQ(nameOfRow(1), QStringLiteral("Image, From Editor"));
    EXPECT_EQ(nameOfRow(0),
              QStringLiteral("Files, \u2068a.txt\u2069, \u2068b.txt\u2069, File moved or deleted, From Editor"));
}

#ifdef QUILLANE_LINE_ART
// As a pop-up, where panels are pop-ups

class HistoryPanelPopUpTest : public HistoryPanelWindowTest {
protected:
    HistoryPanelPopUpTest() { platform.windowTraits = std::make_unique<LinuxWindowTraits>(); }

    void clickAt(QPoint place) {
        QTest::mouseClick(window().windowHandle(), Qt::LeftButton, {}, place);
        settle();
    }
};

TEST_F(HistoryPanelPopUpTest, HasTheKeysAndClosesWithoutPastingOnAClickElsewhere) {
    copyThree();
    open();
    EXPECT_EQ(QApplication::activePopupWidget(), &window());
    QTest::keyClick(window().windowHandle(), Qt::Key_S);
    settle();
    EXPECT_EQ(panel.query(), "s");
    clickAt(QPoint(-60, -60));
    EXPECT_FALSE(panel.isVisible());
    EXPECT_FALSE(window().isVisible());
    queue.advance(1s);
    EXPECT_THAT(keyEvents.posted, SizeIs(0));
}

TEST_F(HistoryPanelPopUpTest, AMenuOfItsOwnDoesNotCloseIt) {
    copyThree();
    open();
    auto& menu = openMenu(1);
    EXPECT_EQ(QApplication::activePopupWidget(), &menu);
    menu.close();
    settle();
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(QApplication::activePopupWidget(), &window());
    press(Qt::Key_Down);
    EXPECT_EQ(list().currentIndex().row(), 2);
}

TEST_F(HistoryPanelPopUpTest, ItsCornersAreRound) {
    open();
    EXPECT_FALSE(window().mask().contains(QPoint(0, 0)));
    EXPECT_TRUE(window().mask().contains(QPoint(20, 0)));
    EXPECT_TRUE(window().mask().contains(window().rect().center()));
}
#endif

} // namespace
} // namespace quillane
