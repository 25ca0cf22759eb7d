// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "permissions/PermissionDragGuideView.hpp"

#include "core/localization/Texts.hpp"
#include "fakes/FakeDesktop.hpp"
#include "permissions/AppDragView.hpp"
#include "support/FocusableNames.hpp"
#include "support/OffscreenApplication.hpp"

#ifdef QUILLANE_LINE_ART
#include "platform/linux/shell/LineArtSymbols.hpp"
#endif

#include <QApplication>
#include <QDir>
#include <QDrag>
#include <QLabel>
#include <QMimeData>
#include <QScreen>
#include <QTest>
#include <QToolButton>
#include <QUrl>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillane {
namespace {

using core::AppLanguage;
using core::MacPermission;

class PermissionDragGuideViewTest : public ::testing::Test {
protected:
    PermissionDragGuideViewTest() {
        desktop.withPermissions({});
        permissions.refresh();
        useReadableFont(1);
    }

    ~PermissionDragGuideViewTest() override { useDark(false); }

    PermissionDragGuideWindow& window() {
        if (!window_) {
            PermissionCardServices services{.permissions = permissions,
                                            .preferences = preferences,
                                            .windowTraits = desktop.windowTraits,
                                            .symbol = {},
                                            .applicationIcon = {}};
#ifdef QUILLANE_LINE_ART
            services.symbol = [](const std::string& name, const QColor& color) { return symbolIcon(name, color); };
            services.applicationIcon = applicationIcon();
#endif
            window_ = std::make_unique<PermissionDragGuideWindow>(services);
            window_->setPermission(MacPermission::accessibility);
            window_->setFrame({40, 30, 420, 190});
            window_->orderFront();
            settle();
        }
        return *window_;
    }

    static void settle() {
        for (int round = 0; round < 10; ++round) {
            QApplication::processEvents();
        }
    }

    static void useReadableFont(double scale) {
        QFont font(QStringLiteral("Noto Sans"));
        font.setFamilies({"Noto Sans", "Noto Sans Hebrew", "Noto Sans Arabic"});
        font.setPointSizeF(10 * scale);
        QApplication::setFont(font);
    }

    static void useDark(bool dark) {
        QPalette palette;
        palette.setColor(QPalette::Window, dark ? QColor(30, 31, 34) : QColor(240, 240, 240));
        palette.setColor(QPalette::WindowText, dark ? Qt::white : Qt::black);
        QApplication::setPalette(palette);
        QApplication::processEvents();
    }

    template <typename Widget>
    Widget& find(const char* name) {
        auto* found = window().findChild<Widget*>(QLatin1String(name));
        if (found == nullptr) {
            throw std::logic_error(std::string("no widget ") + name);
        }
        return *found;
    }

    [[nodiscard]] std::string text(const char* label) {
        return find<QLabel>(label).text().toStdString();
    }

    void expectNothingCut() {
        for (const auto* label : window().findChildren<QLabel*>()) {
            EXPECT_GE(label->height(),
                      label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height())
                << label->text().toStdString();
            EXPECT_TRUE(window().rect().contains(QRect(label->mapTo(&window(), QPoint()), label->size())))
                << label->text().toStdString();
        }
    }

private:
    fakes::OffscreenApplication application_;

protected:
    fakes::FakeDesktop desktop;
    core::AppPreferences preferences{desktop.userDefaults};
    PermissionController permissions{desktop.platform, {"/Applications/Quillane.app", true}};

private:
    std::unique_ptr<PermissionDragGuideWindow> window_;
};

TEST_F(PermissionDragGuideViewTest, IsACardThatLeavesTheApplicationInFrontThere) {
    window();
    ASSERT_EQ(desktop.windowTraits.panels.size(), 1U);
    EXPECT_EQ(desktop.windowTraits.panels.front().second, PanelKind::card);
    EXPECT_EQ(window().geometry(), QRect(40, 30, 420, 190));
}

TEST_F(PermissionDragGuideViewTest, SaysWhatToDoForWhichPermission) {
    EXPECT_EQ(text("permission"), "Accessibility");
    EXPECT_EQ(text("drag"), "Drag Quillane into the list");
    EXPECT_EQ(text("next"), "After dropping, turn on the switch next to Quillane.");
    window().setPermission(MacPermission::inputMonitoring);
    EXPECT_EQ(text("permission"), "Input Monitoring");
}

TEST_F(PermissionDragGuideViewTest, ChangesItsLanguageAtOnce) {
    window();
    preferences.choose(AppLanguage::hebrew);
    EXPECT_EQ(text("drag"), core::texts::dragIntoList.key);
    EXPECT_EQ(window().findChild<QWidget*>("chip")->layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(window().windowTitle().toStdString(), core::texts::permissionGuide.key);
}

TEST_F(PermissionDragGuideViewTest, ShowsThatThePermissionIsGranted) {
    window();
    desktop.permissions.grant(MacPermission::accessibility);
    permissions.refresh();
    EXPECT_EQ(text("next"), "Granted");
}

TEST_F(PermissionDragGuideViewTest, TheCloseControlHasANameTakesTheKeysAndCloses) {
    int closings = 0;
    window().closed = [&] { ++closings; };
    auto& close = find<QToolButton>("close");
    EXPECT_EQ(close.accessibleName(), "Close");
    EXPECT_NE(close.focusPolicy() & Qt::TabFocus, 0);
    close.setFocus();
    QTest::keyClick(&close, Qt::Key_Space);
    EXPECT_EQ(closings, 1);
    EXPECT_FALSE(window().isShown());
    window().orderFront();
    QTest::keyClick(&close, Qt::Key_Escape);
    EXPECT_EQ(closings, 2);
}

TEST_F(PermissionDragGuideViewTest, NamesItsPartsForAssistivePrograms) {
    EXPECT_EQ(window().findChild<PermissionDragGuideView*>()->accessibleName(), window().windowTitle());
    EXPECT_EQ(find<AppDragView>("chip").accessibleName(), "Quillane");
    EXPECT_EQ(find<QToolButton>("close").toolTip(), "Close");
    preferences.choose(AppLanguage::hebrew);
    EXPECT_EQ(window().findChild<PermissionDragGuideView*>()->accessibleName().toStdString(),
              core::texts::permissionGuide.key);
    EXPECT_EQ(find<QToolButton>("close").accessibleName().toStdString(), core::texts::close.key);
    EXPECT_EQ(find<QToolButton>("close").toolTip().toStdString(), core::texts::close.key);
}

TEST_F(PermissionDragGuideViewTest, LinesAreAlignedToTheLeadingSide) {
    for (const auto language : core::allLanguages) {
        preferences.choose(language);
        for (const auto* name : {"permission", "drag", "next"}) {
            const auto alignment = find<QLabel>(name).alignment();
            EXPECT_EQ(alignment.testFlag(Qt::AlignRight), core::isRTL(language)) << name;
            EXPECT_EQ(alignment.testFlag(Qt::AlignLeft), !core::isRTL(language)) << name;
            EXPECT_TRUE(alignment.testFlag(Qt::AlignAbsolute)) << name;
        }
        EXPECT_EQ(find<QLabel>("drag").layoutDirection(), core::isRTL(language) ? Qt::RightToLeft : Qt::LeftToRight);
    }
}

TEST_F(PermissionDragGuideViewTest, GrantIsShownInTheColourOfWhatIsGood) {
    EXPECT_EQ(find<QLabel>("permission").property("role"), "secondary");
    EXPECT_EQ(find<QLabel>("next").property("role"), "secondary");
    desktop.permissions.grant(MacPermission::accessibility);
    permissions.refresh();
    EXPECT_EQ(find<QLabel>("next").property("role"), "good");
    window().setPermission(MacPermission::inputMonitoring);
    EXPECT_EQ(find<QLabel>("next").property("role"), "secondary") << "another permission";
}

TEST_F(PermissionDragGuideViewTest, OtherKeysDoNotCloseIt) {
    window().closed = [] { FAIL() << "closed"; };
    for (const auto key : {Qt::Key_A, Qt::Key_Tab, Qt::Key_Backspace}) {
        QTest::keyClick(&find<QToolButton>("close"), key);
    }
    EXPECT_TRUE(window().isShown());
}

TEST_F(PermissionDragGuideViewTest, TitleIsBoldAndLargerAndShrinksWithTheCard) {
    const auto title = find<QLabel>("drag").font();
    const auto line = find<QLabel>("next").font();
    EXPECT_TRUE(title.bold());
    EXPECT_FALSE(line.bold());
    EXPECT_NEAR(title.pointSizeF() / line.pointSizeF(), 1.2, 0.01);
    EXPECT_NEAR(line.pointSizeF(), 10, 0.01);
    window().setFrame({0, 0, 260, 110});
    settle();
    EXPECT_LT(find<QLabel>("next").font().pointSizeF(), line.pointSizeF());
    EXPECT_GE(find<QLabel>("next").font().pointSizeF(), 5.99) << "no smaller than can be read";
    window().setFrame({0, 0, 420, 190});
    settle();
    EXPECT_NEAR(find<QLabel>("next").font().pointSizeF(), 10, 0.01);
}

TEST_F(PermissionDragGuideViewTest, CornersAreRoundAndTheRestIsTheCard) {
    const auto picture = window().grab().toImage();
    EXPECT_NE(picture.pixelColor(0, 0), picture.pixelColor(210, 5));
    EXPECT_NE(picture.pixelColor(419, 189), picture.pixelColor(210, 5));
    EXPECT_EQ(picture.pixelColor(20, 5), picture.pixelColor(210, 5));
}

TEST_F(PermissionDragGuideViewTest, ScreensOfTheDesktopBeginWithTheMainOne) {
    const auto screens = currentScreens();
    ASSERT_FALSE(screens.empty());
    const auto main = QGuiApplication::primaryScreen()->geometry();
    EXPECT_EQ(screens.front().frame,
              (core::ScreenRect{static_cast<double>(main.x()), static_cast<double>(main.y()),
                                static_cast<double>(main.width()), static_cast<double>(main.height())}));
    EXPECT_LE(screens.front().visible.height, screens.front().frame.height);
}

TEST_F(PermissionDragGuideViewTest, OnlyTheLeftButtonDragsAndFromThePressedPlace) {
    auto& chip = find<AppDragView>("chip");
    std::vector<QPoint> hotSpots;
    chip.run = [&](const QDrag& drag) { hotSpots.push_back(drag.hotSpot()); };
    const auto moveTo = [&](QPoint point, Qt::MouseButton button) {
        QMouseEvent event(QEvent::MouseMove, point, chip.mapToGlobal(point), Qt::NoButton, button, {});
        QApplication::sendEvent(&chip, &event);
    };
    const int distance = QApplication::startDragDistance();
    QTest::mousePress(&chip, Qt::LeftButton, {}, {12, 20});
    moveTo({12 + distance, 20}, Qt::RightButton);
    moveTo({12 + distance, 20}, Qt::NoButton);
    moveTo({12 + distance - 1, 20}, Qt::LeftButton);
    EXPECT_TRUE(hotSpots.empty());
    moveTo({12 + distance, 20}, Qt::LeftButton);
    EXPECT_THAT(hotSpots, ::testing::ElementsAre(QPoint(12, 20)));
    EXPECT_EQ(chip.size(), QSize(64, 64));
}

TEST_F(PermissionDragGuideViewTest, TheChipDragsTheApplication) {
    auto& chip = find<AppDragView>("chip");
    EXPECT_EQ(chip.cursor().shape(), Qt::OpenHandCursor);
    std::vector<QUrl> dragged;
    chip.run = [&](const QDrag& drag) { dragged.push_back(drag.mimeData()->urls().value(0)); };
    QTest::mousePress(&chip, Qt::LeftButton, {}, {20, 20});
    const auto moveTo = [&](QPoint point) {
        QMouseEvent event(QEvent::MouseMove, point, chip.mapToGlobal(point), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&chip, &event);
    };
    moveTo({21, 20});
    EXPECT_TRUE(dragged.empty()); // a trembling hand does not start a drag
    moveTo({50, 20});
    EXPECT_THAT(dragged, ::testing::ElementsAre(QUrl("file:///Applications/Quillane.app")));
}

TEST_F(PermissionDragGuideViewTest, ShrinksToWhatASmallScreenLeaves) {
    window().setFrame({0, 0, 296, 136});
    settle();
    EXPECT_EQ(window().size(), QSize(296, 136));
}

TEST_F(PermissionDragGuideViewTest, PicturesInAllLanguagesLightAndDark) {
    const QDir folder(QStringLiteral(QUILLANE_SCREENSHOTS));
    for (const bool dark : {false, true}) {
        useDark(dark);
        for (const auto language : core::allLanguages) {
            preferences.choose(language);
            window();
            settle();
            expectNothingCut();
            fakes::expectNamedFocusables(window());
            const auto picture = window().grab();
            const auto name = QStringLiteral("permission-guide-%1-%2.png")
                                  .arg(QLatin1String(std::string(core::languageID(language)).c_str()),
                                       dark ? QStringLiteral("dark") : QStringLiteral("light"));
            ASSERT_TRUE(picture.save(folder.filePath(name)));
            const auto middle = picture.toImage().pixelColor(210, 180);
            EXPECT_EQ(middle.lightness() < 128, dark);
        }
    }
}

TEST_F(PermissionDragGuideViewTest, TextThatGrowsByHalfIsNotCut) {
    useReadableFont(1.5);
    for (const auto language : core::allLanguages) {
        preferences.choose(language);
        window();
        settle();
        expectNothingCut();
    }
}

} // namespace
} // namespace quillane
