// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "permissions/PermissionDragGuide.hpp"

#include "fakes/FakeDesktop.hpp"
#include "permissions/PermissionController.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

namespace quillane {

namespace core {

static void PrintTo(const ScreenRect& rect, std::ostream* out) {
    *out << rect.x << "," << rect.y << " " << rect.width << "x" << rect.height;
}

} // namespace core

namespace {

using namespace std::chrono_literals;
using core::MacPermission;
using core::ScreenRect;

/// The calls of a card; it lives in the test, so that they can be checked.
struct Card {
    std::vector<MacPermission> permissions;
    ScreenRect frame;
    bool shown = false;
    int showings = 0;
    std::function<void()>* closed = nullptr;
};

class FakePanel : public PermissionGuidePanel {
public:
    explicit FakePanel(Card& card) : card_(card) { card_.closed = &closed; }

    void setPermission(MacPermission permission) override { card_.permissions.push_back(permission); }

    void setFrame(const ScreenRect& frame) override { card_.frame = frame; }

    [[nodiscard]] bool isShown() const override { return card_.shown; }

    void orderFront() override {
        card_.shown = true;
        ++card_.showings;
    }

    void orderOut() override { card_.shown = false; }

private:
    Card& card_;
};

class PermissionDragGuideTest : public ::testing::Test {
protected:
    PermissionDragGuideTest() {
        desktop.withPermissions({});
        permissions.refresh();
    }

    /// System Settings comes to the front with a window there.
    pid_t openSettings(const ScreenRect& bounds) {
        desktop.withFrontApplication(std::string(PermissionDragGuide::systemSettings), "System Settings");
        desktop.windowList.open({.pid = desktop.frontPid(), .layer = 0, .bounds = bounds});
        return desktop.frontPid();
    }

    fakes::FakeDesktop desktop;
    PermissionController permissions{desktop.platform, {"/Applications/Quillane.app", true}};
    std::vector<ScreenArea> screens{{{0, 0, 1440, 900}, {0, 25, 1440, 875}}};
    Card card;
    int panels = 0;
    PermissionDragGuide guide{{.platform = desktop.platform,
                               .permissions = permissions,
                               .screens = [this] { return screens; },
                               .makePanel =
                                   [this] {
                                       ++panels;
                                       return std::make_unique<FakePanel>(card);
                                   }}};
};

TEST_F(PermissionDragGuideTest, GoesBelowTheSettingsWindowAtOnce) {
    openSettings({300, 100, 700, 500});
    guide.present(MacPermission::accessibility);
    EXPECT_TRUE(card.shown);
    EXPECT_EQ(card.frame, (ScreenRect{580, 612, 420, 190})); // right-aligned, 12 below the window's lower edge at 600
    EXPECT_THAT(card.permissions, ::testing::ElementsAre(MacPermission::accessibility));
}

TEST_F(PermissionDragGuideTest, FollowsTheWindowEveryHalfSecond) {
    const auto settings = openSettings({300, 100, 700, 500});
    guide.present(MacPermission::accessibility);
    desktop.windowList.close(settings);
    desktop.windowList.open({.pid = settings, .layer = 0, .bounds = {400, 100, 700, 500}});
    desktop.queue.advance(500ms);
    EXPECT_EQ(card.frame, (ScreenRect{680, 612, 420, 190}));
    EXPECT_EQ(card.showings, 1);
}

TEST_F(PermissionDragGuideTest, HidesWhileAnotherApplicationIsInFrontAndComesBack) {
    openSettings({300, 100, 700, 500});
    guide.present(MacPermission::accessibility);
    desktop.switchTo("com.apple.TextEdit");
    desktop.queue.advance(500ms);
    EXPECT_FALSE(card.shown);
    desktop.switchTo(PermissionDragGuide::systemSettings);
    desktop.queue.advance(500ms);
    EXPECT_TRUE(card.shown);
    EXPECT_EQ(panels, 1);
}

TEST_F(PermissionDragGuideTest, IsNotShownBeforeSystemSettingsIsInFront) {
    guide.present(MacPermission::inputMonitoring);
    EXPECT_FALSE(card.shown);
    openSettings({300, 100, 700, 500});
    desktop.queue.advance(500ms);
    EXPECT_TRUE(card.shown);
}

TEST_F(PermissionDragGuideTest, WithoutAWindowItIsAtTheBottomOfTheMainScreen) {
    desktop.withFrontApplication(std::string(PermissionDragGuide::systemSettings));
    guide.present(MacPermission::accessibility);
    EXPECT_EQ(card.frame, (ScreenRect{510, 698, 420, 190})); // 12 above the lower edge at 900
}

TEST_F(PermissionDragGuideTest, TakesTheFirstLargeOrdinaryWindowOfSystemSettings) {
    const auto settings = openSettings({300, 100, 700, 500});
    desktop.windowList.open({.pid = settings, .layer = 3, .bounds = {0, 100, 800, 600}});
    desktop.windowList.open({.pid = settings, .layer = 0, .bounds = {0, 100, 400, 600}});
    desktop.windowList.open({.pid = settings, .layer = 0, .bounds = {0, 100, 800, 300}});
    desktop.windowList.open({.pid = settings + 1, .layer = 0, .bounds = {0, 100, 800, 600}});
    guide.present(MacPermission::accessibility);
    EXPECT_EQ(card.frame, (ScreenRect{580, 612, 420, 190}));
}

TEST_F(PermissionDragGuideTest, AWindowIsLargerThanFourHundredByThreeHundred) {
    openSettings({300, 100, 401, 301});
    guide.present(MacPermission::accessibility);
    EXPECT_EQ(card.frame, (ScreenRect{281, 413, 420, 190})); // right-aligned with 701, 12 below 401
}

TEST_F(PermissionDragGuideTest, WithoutAScreenTheCardStays) {
    openSettings({300, 100, 700, 500});
    guide.present(MacPermission::accessibility);
    const auto before = card.frame;
    screens.clear();
    desktop.queue.advance(500ms);
    EXPECT_EQ(card.frame, before);
    EXPECT_TRUE(card.shown);
}

TEST_F(PermissionDragGuideTest, AWindowOnNoScreenPutsItOnTheMainOne) {
    screens.push_back({{1440, 0, 1920, 1080}, {1440, 25, 1920, 1055}});
    openSettings({-5000, 100, 700, 500});
    guide.present(MacPermission::accessibility);
    EXPECT_GE(card.frame.x, 0);
    EXPECT_LE(card.frame.x + card.frame.width, 1440);
}

TEST_F(PermissionDragGuideTest, ScreenOverAndUnderTheMainOneIsChosenByTheSharedArea) {
    screens.push_back({{0, 900, 1440, 900}, {0, 900, 1440, 900}});
    openSettings({300, 700, 700, 500}); // 200 rows above, 300 below
    guide.present(MacPermission::accessibility);
    EXPECT_EQ(card.frame, (ScreenRect{580, 1212, 420, 190}));
}

TEST_F(PermissionDragGuideTest, PresentingAgainChangesThePermissionOfTheSameCard) {
    openSettings({300, 100, 700, 500});
    guide.present(MacPermission::inputMonitoring);
    guide.present(MacPermission::accessibility);
    EXPECT_THAT(card.permissions, ::testing::ElementsAre(MacPermission::inputMonitoring, MacPermission::accessibility));
    EXPECT_EQ(panels, 1);
    EXPECT_EQ(desktop.queue.timerCount(), 1U);
}

TEST_F(PermissionDragGuideTest, AWindowFlushWithTheBottomPutsItBeside) {
    openSettings({100, 400, 700, 500});
    guide.present(MacPermission::accessibility);
    EXPECT_EQ(card.frame, (ScreenRect{812, 698, 420, 190})); // kept 12 above the lower edge of the screen
}

TEST_F(PermissionDragGuideTest, GoesToTheScreenThatHoldsTheWindow) {
    screens.push_back({{1440, -300, 1920, 1080}, {1440, -275, 1920, 1055}});
    openSettings({1400, 0, 900, 600}); // mostly on the second screen
    guide.present(MacPermission::accessibility);
    EXPECT_EQ(card.frame, (ScreenRect{2312, 410, 420, 190})); // below would pass the lower edge at 780
}

TEST_F(PermissionDragGuideTest, EveryStepReadsTheGrants) {
    openSettings({300, 100, 700, 500});
    guide.present(MacPermission::accessibility);
    desktop.permissions.grant(MacPermission::accessibility);
    desktop.queue.advance(500ms);
    EXPECT_TRUE(permissions.granted().contains(MacPermission::accessibility));
}

TEST_F(PermissionDragGuideTest, ClosingEndsTheFollowing) {
    openSettings({300, 100, 700, 500});
    guide.present(MacPermission::accessibility);
    (*card.closed)();
    EXPECT_FALSE(card.shown);
    desktop.queue.advance(5000ms);
    EXPECT_FALSE(card.shown);
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
    guide.present(MacPermission::inputMonitoring);
    EXPECT_TRUE(card.shown);
    EXPECT_EQ(panels, 1);
    EXPECT_EQ(desktop.queue.timerCount(), 1U);
}

TEST_F(PermissionDragGuideTest, AnAnswerThatComesAfterTheEndShowsNothing) {
    openSettings({300, 100, 700, 500});
    desktop.windowList.late = true;
    guide.present(MacPermission::accessibility);
    guide.dismiss();
    desktop.windowList.answer();
    EXPECT_FALSE(card.shown);
}

TEST_F(PermissionDragGuideTest, AnAnswerThatIsOvertakenByASwitchShowsNothing) {
    openSettings({300, 100, 700, 500});
    desktop.windowList.late = true;
    guide.present(MacPermission::accessibility);
    desktop.switchTo("com.apple.TextEdit");
    desktop.queue.advance(500ms);
    desktop.windowList.answer();
    EXPECT_FALSE(card.shown);
}

} // namespace
} // namespace quillane
