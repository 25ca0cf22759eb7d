// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/ChordSignWindow.hpp"
#include "core/localization/Texts.hpp"
#include "fakes/FakeDesktop.hpp"
#include "support/OffscreenApplication.hpp"

#ifdef QUILLANE_LINE_ART
#include "platform/linux/shell/LineArtSymbols.hpp"
#endif

#include <QAccessible>
#include <QApplication>
#include <QCursor>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QScreen>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace quillane {
namespace {

using core::AppLanguage;
using core::WritingDirection;
namespace texts = core::texts;

class ChordSignWindowTest : public ::testing::Test {
protected:
    ChordSignWindowTest() {
        QFont font(QStringLiteral("Noto Sans"));
        font.setFamilies({"Noto Sans", "Noto Sans Hebrew", "Noto Sans Arabic"});
        font.setPointSizeF(10);
        QApplication::setFont(font);
        ChordSignWindow::Symbol symbol;
#ifdef QUILLANE_LINE_ART
        symbol = [](const std::string& name, const QColor& color) { return symbolIcon(name, color); };
#endif
        window = std::make_unique<ChordSignWindow>(desktop.windowTraits, symbol);
    }

    ~ChordSignWindowTest() override {
        useDark(false);
    }

    static void useDark(bool dark) {
        QPalette palette;
        palette.setColor(QPalette::Window, dark ? QColor(30, 31, 34) : QColor(240, 240, 240));
        palette.setColor(QPalette::WindowText, dark ? Qt::white : Qt::black);
        QApplication::setPalette(palette);
        QApplication::processEvents();
    }

private:
    fakes::OffscreenApplication application_;

protected:
    fakes::FakeDesktop desktop;
    std::unique_ptr<ChordSignWindow> window;
    const core::ChordSign rightToLeft =
        core::chordSign({texts::appliedDirection("RTL", "Chrome"), WritingDirection::rightToLeft});
    const core::ChordSign leftToRight =
        core::chordSign({texts::appliedDirection("LTR", "Chrome"), WritingDirection::leftToRight});
    const core::ChordSign source = core::chordSign({texts::keyboardLanguage("Hebrew"), core::SelectedSource{"Hebrew"}});
};

TEST_F(ChordSignWindowTest, IsASignBelowTheCursor) {
    ASSERT_EQ(desktop.windowTraits.panels.size(), 1U);
    EXPECT_EQ(desktop.windowTraits.panels.front().second, PanelKind::sign);
    window->present(rightToLeft, AppLanguage::english, AXRect{300, 200, 2, 18});
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->y(), 224);
    EXPECT_NEAR(window->geometry().center().x(), 301, 1);
    window->dismiss();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(ChordSignWindowTest, WithoutACursorItIsAtThePointer) {
    QCursor::setPos(400, 300);
    window->present(rightToLeft, AppLanguage::english, std::nullopt);
    EXPECT_NEAR(window->geometry().center().x(), 400, 1);
    EXPECT_GT(window->y(), 300);
    EXPECT_LT(window->y(), 350);
}

TEST_F(ChordSignWindowTest, AScreenReaderGetsANotificationWithTheWholeMessage) {
    window->present(rightToLeft, AppLanguage::english, std::nullopt);
    const auto* sign = QAccessible::queryAccessibleInterface(window.get());
    ASSERT_NE(sign, nullptr);
    EXPECT_EQ(sign->role(), QAccessible::Notification);
    EXPECT_EQ(sign->text(QAccessible::Name), "Applied RTL in Chrome");
    window->present(source, AppLanguage::english, std::nullopt);
    EXPECT_EQ(sign->text(QAccessible::Name), "Keyboard language: Hebrew");
}

TEST_F(ChordSignWindowTest, ALongMessageIsWrappedAndNothingOfItCut) {
    for (const auto language : core::allLanguages) {
        window->present(core::chordSign(texts::turnOnDirectionInFirefox("bidi.browser.ui", "about:config")), language,
                        std::nullopt);
        const auto& text = *window->findChild<QLabel*>(QStringLiteral("text"));
        EXPECT_LE(text.width(), 320);
        EXPECT_GE(text.height(), text.heightForWidth(text.width()));
        EXPECT_GE(text.height(), 2 * text.fontMetrics().height());
    }
    window->present(source, AppLanguage::english, std::nullopt);
    EXPECT_LT(window->width(), 140);
}

TEST_F(ChordSignWindowTest, FollowsLightAndDark) {
    const auto background = [&] {
        window->present(source, AppLanguage::english, std::nullopt);
        return window->grab().toImage().pixelColor(4, window->height() / 2).lightness();
    };
    EXPECT_GT(background(), 200);
    useDark(true);
    EXPECT_LT(background(), 80);
}

TEST_F(ChordSignWindowTest, EverySymbolHasADrawing) {
    for (const auto& sign : {rightToLeft, leftToRight, source, core::chordSign(texts::closeOpenMenu)}) {
        for (const auto name : sign.symbols) {
            EXPECT_TRUE(QFile::exists(
                QStringLiteral(QUILLANE_RESOURCES "/symbols/%1.svg").arg(QString::fromStdString(std::string(name)))))
                << name;
        }
    }
}

TEST_F(ChordSignWindowTest, PicturesInAllLanguagesLightAndDark) {
    const QDir folder(QStringLiteral(QUILLANE_SCREENSHOTS));
    const std::vector<std::pair<QString, core::ChordSign>> signs{
        {"rtl", rightToLeft},
        {"ltr", leftToRight},
        {"source", source},
        {"failure", core::chordSign(texts::closeOpenMenu)},
        {"long", core::chordSign(texts::turnOnDirectionInFirefox("bidi.browser.ui", "about:config"))}};
    for (const bool dark : {false, true}) {
        useDark(dark);
        for (const auto language : core::allLanguages) {
            for (const auto& [name, sign] : signs) {
                window->present(sign, language, std::nullopt);
                const auto file = QStringLiteral("sign-%1-%2-%3.png")
                                      .arg(name, QString::fromStdString(std::string(core::languageID(language))),
                                           dark ? QStringLiteral("dark") : QStringLiteral("light"));
                const auto picture = window->grab();
                ASSERT_TRUE(picture.save(folder.filePath(file)));
                const auto image = picture.toImage();
                const auto background = image.pixelColor(4, image.height() / 2);
                int drawn = 0;
                for (int y = 5; y < image.height() - 5; ++y) {
                    for (int x = 5; x < image.width() - 5; ++x) {
                        drawn += image.pixelColor(x, y) != background ? 1 : 0;
                    }
                }
                EXPECT_GT(drawn, 60) << file.toStdString();
            }
        }
    }
}

} // namespace
} // namespace quillane
