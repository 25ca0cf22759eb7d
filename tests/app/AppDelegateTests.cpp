// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/AppDelegateTest.hpp"
#include "core/localization/Texts.hpp"

#include <QPushButton>

#include <nlohmann/json.hpp>

#include <algorithm>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using core::AppLanguage;
using core::MacPermission;
using fakes::Modifier;

TEST_F(AppDelegateTest, LaunchingShowsTheMenuAndStartsTheMonitor) {
    launch();
    EXPECT_EQ(desktop.windowTraits.policies(), std::vector{ActivationPolicy::accessory});
    EXPECT_EQ(desktop.statusItem.rows().size(), 20U);
    EXPECT_EQ(desktop.statusItem.rows().front().title, "Quillane 1.2");
    EXPECT_EQ(desktop.applicationMenu.menus().size(), 3U);
    EXPECT_TRUE(desktop.tap.isEnabled());
    EXPECT_EQ(statusRowTitle(), "Shortcuts are active");
}

TEST_F(AppDelegateTest, LaunchingAsksAnOldCopyToQuit) {
    const auto oldCopy = desktop.workspace.open(std::string(legacyBundleID));
    launch();
    EXPECT_EQ(desktop.workspace.terminated(), std::vector{oldCopy});
}

TEST_F(AppDelegateTest, AnOldCopyThatStaysIsNamedUntilItIsClosed) {
    desktop.workspace.setRefusesTermination(true);
    const auto oldCopy = desktop.workspace.open(std::string(legacyBundleID));
    launch();
    EXPECT_EQ(statusRowTitle(), "Close the old copy of Quillane");
    desktop.workspace.quit(oldCopy);
    desktop.queue.advance(2s);
    EXPECT_EQ(statusRowTitle(), "Shortcuts are active");
}

TEST_F(AppDelegateTest, AnOldCopyStartedLaterIsNoticedWithinTwoSeconds) {
    launch();
    desktop.workspace.open(std::string(legacyBundleID));
    desktop.queue.advance(2s);
    EXPECT_EQ(statusRowTitle(), "Close the old copy of Quillane");
}

TEST_F(AppDelegateTest, TheRelaunchFlagIsReadOnce) {
    defaults.setObject("QuillaneShowPermissionsAfterRestart", true);
    launch();
    EXPECT_FALSE(defaults.object("QuillaneShowPermissionsAfterRestart"));
}

TEST_F(AppDelegateTest, WithoutAccessibilityTheMonitorWaitsAndStartsWithinTwoSecondsOfTheGrant) {
    desktop.withPermissions({MacPermission::inputMonitoring});
    launch();
    EXPECT_FALSE(desktop.tap.exists());
    EXPECT_EQ(statusRowTitle(), "Permissions approved: 1 of 2");
    desktop.permissions.grant(MacPermission::accessibility);
    desktop.queue.advance(2s);
    EXPECT_TRUE(desktop.tap.isEnabled());
}

TEST_F(AppDelegateTest, AccessibilityAloneIsEnough) {
    desktop.withPermissions({MacPermission::accessibility});
    launch();
    EXPECT_TRUE(desktop.tap.isEnabled());
}

TEST_F(AppDelegateTest, ARevokedPermissionStopsTheMonitorWithinTwoSeconds) {
    launch();
    desktop.permissions.revoke(MacPermission::accessibility);
    desktop.queue.advance(2s);
    EXPECT_FALSE(desktop.tap.exists());
}

TEST_F(AppDelegateTest, ATickLeavesARunningMonitorAlone) {
    launch();
    const auto starts = desktop.tap.startCount();
    desktop.queue.advance(10s);
    EXPECT_EQ(desktop.tap.startCount(), starts);
}

TEST_F(AppDelegateTest, ATickRestartsALostTap) {
    launch();
    desktop.tap.stop();
    desktop.queue.advance(2s);
    EXPECT_TRUE(desktop.tap.isEnabled());
}

TEST_F(AppDelegateTest, AnUnchangedTickRedrawsNothing) {
    launch();
    const auto menus = desktop.statusItem.menuCount();
    const auto images = desktop.statusItem.imageCount();
    const auto writes = defaults.writes;
    desktop.queue.advance(20s);
    EXPECT_EQ(desktop.statusItem.menuCount(), menus);
    EXPECT_EQ(desktop.statusItem.imageCount(), images);
    EXPECT_EQ(defaults.writes, writes);
}

TEST_F(AppDelegateTest, EachToggleInvertsItsOwnOptionAndSavesIt) {
    launch();

    const struct {
        const char* title;
        bool core::FeatureOptions::*option;
    } toggles[] = {{"Temporary English with Shift", &core::FeatureOptions::shiftEnglish},
                   {"Switch language with Option + Shift", &core::FeatureOptions::languageSwitch},
                   {"Paragraph direction shortcuts", &core::FeatureOptions::writingDirection}};

    for (const auto& [title, option] : toggles) {
        auto expected = model->options();
        expected.*option = false;
        click(title);
        EXPECT_EQ(model->options(), expected) << title;
        EXPECT_EQ(core::FeatureOptions::load(defaults), expected) << title;
        EXPECT_FALSE(checked(title)) << title;
        click(title);
        EXPECT_TRUE(checked(title)) << title;
    }
}

TEST_F(AppDelegateTest, WithEveryKeyboardFeatureOffTheMonitorStops) {
    defaults.setObject("FixWrongLayoutEnabled", false);
    launch();
    click("Temporary English with Shift");
    click("Switch language with Option + Shift");
    EXPECT_TRUE(desktop.tap.exists());
    click("Paragraph direction shortcuts");
    EXPECT_FALSE(desktop.tap.exists());
    EXPECT_EQ(statusRowTitle(), "Shortcuts are off");
}

TEST_F(AppDelegateTest, PauseAllStopsTheMonitorAndKeepsTheOtherOptions) {
    defaults.setObject("LanguageSwitchEnabled", false);
    launch();
    const auto before = model->options();
    click("Pause all");
    EXPECT_FALSE(desktop.tap.exists());
    EXPECT_EQ(statusRowTitle(), "Paused");
    EXPECT_EQ(desktop.statusItem.rows()[1].symbol, "pause.circle");
    click("Resume");
    EXPECT_EQ(model->options(), before);
    EXPECT_TRUE(desktop.tap.isEnabled());
}

TEST_F(AppDelegateTest, PauseOutlastsARelaunch) {
    launch();
    click("Pause all");
    delegate->applicationWillTerminate();
    launch();
    EXPECT_FALSE(desktop.tap.exists());
    EXPECT_EQ(desktop.statusItem.row("Resume").symbol, "play.circle");
}

TEST_F(AppDelegateTest, TheImageShowsThePause) {
    launch();
    const auto plain = desktop.statusItem.image();
    click("Pause all");
    EXPECT_NE(desktop.statusItem.image(), plain);
    EXPECT_EQ(desktop.statusItem.accessibilityLabel(), "Quillane: paused");
    click("Resume");
    EXPECT_EQ(desktop.statusItem.image(), plain);
}

TEST_F(AppDelegateTest, AnotherLanguageRedrawsEveryText) {
    launch();
    preferences->choose(AppLanguage::hebrew);
    EXPECT_EQ(desktop.statusItem.rows().back().title, core::texts::quitQuillane.rendered(AppLanguage::hebrew));
    EXPECT_EQ(desktop.statusItem.direction(), LayoutDirection::rightToLeft);
    EXPECT_EQ(desktop.applicationMenu.direction(), LayoutDirection::rightToLeft);
    EXPECT_EQ(desktop.applicationMenu.menus()[1].title, core::texts::edit.rendered(AppLanguage::hebrew));
}

TEST_F(AppDelegateTest, WindowsMenusAndQtFollowTheLanguageWhateverTheDesktop) {
    launch();
    preferences->choose(AppLanguage::hebrew);
    EXPECT_EQ(QApplication::layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "OK").toStdString(),
              core::texts::qtOK.rendered(AppLanguage::hebrew));
    preferences->choose(AppLanguage::english);
    EXPECT_EQ(QApplication::layoutDirection(), Qt::LeftToRight);
}

TEST_F(AppDelegateTest, OpeningAgainShowsTheSettings) {
    launch().applicationShouldHandleReopen();
    ASSERT_NE(settingsWindow(), nullptr);
    EXPECT_TRUE(settingsWindow()->isVisible());
    EXPECT_EQ(model->page(), core::SettingsPage::general);
    EXPECT_EQ(desktop.windowTraits.policies().back(), ActivationPolicy::regular);
    settingsWindow()->close();
    EXPECT_EQ(desktop.windowTraits.policies().back(), ActivationPolicy::accessory);
    EXPECT_TRUE(delegate->handleControlRequest({"open", {}}).ok);
    EXPECT_TRUE(settingsWindow()->isVisible());
}

TEST_F(AppDelegateTest, MenuRowsLeadToTheirPages) {
    launch();
    const std::vector<std::pair<std::string, core::SettingsPage>> rows{
        {"Permissions", core::SettingsPage::permissions},
        {"Quick test", core::SettingsPage::testing},
        {"Update settings", core::SettingsPage::updates},
        {"Settings", core::SettingsPage::general},
    };
    for (const auto& [title, page] : rows) {
        click(title);
        EXPECT_EQ(model->page(), page) << title;
        EXPECT_TRUE(settingsWindow()->isVisible());
    }
    click("Check for updates now");
    EXPECT_EQ(desktop.updater.checks, 1);
    EXPECT_EQ(desktop.updater.starts, 1);
}

TEST_F(AppDelegateTest, MissingPermissionsShowTheirPageHalfASecondAfterTheLaunch) {
    desktop.withPermissions({});
    launch();
    EXPECT_EQ(settingsWindow(), nullptr);
    desktop.queue.advance(500ms);
    ASSERT_NE(settingsWindow(), nullptr);
    EXPECT_EQ(model->page(), core::SettingsPage::permissions);
}

TEST_F(AppDelegateTest, ALaunchAtLoginShowsNoWindow) {
    desktop.withPermissions({});
    desktop.workspace.setLaunchedAtLogin(true);
    launch();
    desktop.queue.advance(2s);
    EXPECT_EQ(settingsWindow(), nullptr);
}

TEST_F(AppDelegateTest, OpeningSystemSettingsPutsTheCardBesideThem) {
    desktop.withPermissions({});
    launch();
    click("Permissions");
    QApplication::processEvents();
    const auto buttons = settingsWindow()->findChildren<QPushButton*>();
    const auto open = std::ranges::find(buttons, QStringLiteral("Open System Settings"), &QPushButton::text);
    ASSERT_NE(open, buttons.end());
    (*open)->click();
    ASSERT_FALSE(desktop.permissions.opened().empty());
    ASSERT_EQ(desktop.windowTraits.panels.size(), 1U);
    const auto* card = desktop.windowTraits.panels.front().first;
    EXPECT_FALSE(card->isVisible()); // System Settings still starts
    desktop.withFrontApplication("com.apple.systempreferences");
    desktop.queue.advance(500ms);
    EXPECT_TRUE(card->isVisible());
    delegate->applicationWillTerminate();
    EXPECT_FALSE(card->isVisible());
}

TEST_F(AppDelegateTest, AfterARelaunchForPermissionsTheirPageIsShown) {
    defaults.setObject("QuillaneShowPermissionsAfterRestart", true);
    launch();
    desktop.queue.advance(500ms);
    ASSERT_NE(settingsWindow(), nullptr);
    EXPECT_EQ(model->page(), core::SettingsPage::permissions);
}

TEST_F(AppDelegateTest, TheModelsHandlersReachTheDesktop) {
    launch();
    model->switchLanguage();
    EXPECT_EQ(desktop.inputSources.current(), fakes::hebrew());
    EXPECT_TRUE(model->runtime().inputIsRTL);
    model->openAccessibility();
    model->openInputMonitoring();
    EXPECT_EQ(desktop.permissions.opened(),
              (std::vector{MacPermission::accessibility, MacPermission::inputMonitoring}));
    model->openKeyboard();
    EXPECT_EQ(desktop.inputSources.openings, 1);
    desktop.permissions.revoke(MacPermission::accessibility);
    model->refresh();
    EXPECT_FALSE(desktop.tap.exists());
}

TEST_F(AppDelegateTest, PagesThatTheSystemsSettingsLackAreNotOffered) {
    desktop.permissions.removeSettings(MacPermission::inputMonitoring);
    desktop.inputSources.settings = false;
    launch();
    EXPECT_TRUE(model->openAccessibility);
    EXPECT_FALSE(model->openInputMonitoring);
    EXPECT_FALSE(model->openKeyboard);
}

TEST_F(AppDelegateTest, PageOfAccessibilityMayBeLackingAlone) {
    desktop.permissions.removeSettings(MacPermission::accessibility);
    launch();
    EXPECT_FALSE(model->openAccessibility);
    EXPECT_TRUE(model->openInputMonitoring);
}

TEST_F(AppDelegateTest, AGrantStartsTheMonitorAsSoonAsItIsSeen) {
    desktop.withPermissions({MacPermission::inputMonitoring});
    desktop.permissions.grantOnRequest();
    launch();
    click("Permissions");
    settleWindows();
    EXPECT_TRUE(desktop.permissions.requests().empty()) << "it takes a click";
    const auto buttons = settingsWindow()->findChildren<QPushButton*>();
    const auto request = std::ranges::find_if(
        buttons, [](const auto* button) { return button->isVisible() && button->text() == "Request permission"; });
    ASSERT_NE(request, buttons.end());
    (*request)->click();
    EXPECT_TRUE(desktop.tap.isEnabled());
}

TEST_F(AppDelegateTest, WakingMakesAFreshTap) {
    launch();
    const auto starts = desktop.tap.startCount();
    desktop.workspace.wake();
    EXPECT_EQ(desktop.tap.startCount(), starts + 1);
    EXPECT_TRUE(desktop.tap.isEnabled());
}

TEST_F(AppDelegateTest, AViewerOfAnotherScreenInFrontSuspends) {
    launch();
    desktop.withFrontApplication("com.apple.ScreenSharing");
    EXPECT_TRUE(model->runtime().screenSharingSuspended);
    EXPECT_EQ(statusRowTitle(), "Shortcuts are paused during Screen Sharing");
    desktop.withFrontApplication("com.apple.TextEdit");
    EXPECT_FALSE(model->runtime().screenSharingSuspended);
}

TEST_F(AppDelegateTest, WithoutAKeyboardTheMenuSaysSoAndNothingStarts) {
    keyboardAvailable = false;
    launch();
    EXPECT_EQ(desktop.tap.startCount(), 0);
    EXPECT_EQ(statusRowTitle(), core::texts::keyboardNeedsX11.rendered(AppLanguage::english));
}

TEST_F(AppDelegateTest, QuitEndsTheProgram) {
    launch();
    click("Quit Quillane");
    desktop.applicationMenu.click("Quit Quillane");
    EXPECT_EQ(terminations, 2);
}

TEST_F(AppDelegateTest, TerminatingStopsEverything) {
    launch();
    delegate->applicationWillTerminate();
    EXPECT_FALSE(desktop.tap.exists());
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
    const auto menus = desktop.statusItem.menuCount();
    desktop.workspace.wake();
    desktop.withFrontApplication("com.apple.TextEdit");
    preferences->choose(AppLanguage::arabic);
    EXPECT_FALSE(desktop.tap.exists());
    EXPECT_EQ(desktop.statusItem.menuCount(), menus);
}

TEST_F(AppDelegateTest, PostedWorkThatOutlivesTheDelegateDoesNothing) {
    launch();
    desktop.withFrontApplication("com.apple.TextEdit");
    desktop.press(Modifier::leftOption).press(Modifier::leftShift);
    desktop.release(Modifier::leftShift).release(Modifier::leftOption);
    delegate->applicationWillTerminate();
    delegate.reset();
    desktop.settle();
    EXPECT_EQ(desktop.inputSources.current(), fakes::english());
}

TEST_F(AppDelegateTest, PauseAndResumeFromTheCommand) {
    launch();
    EXPECT_TRUE(delegate->handleControlRequest({"pause", {}}).ok);
    EXPECT_TRUE(delegate->handleControlRequest({"pause", {}}).ok);
    EXPECT_TRUE(model->options().paused);
    EXPECT_TRUE(delegate->handleControlRequest({"resume", {}}).ok);
    EXPECT_FALSE(model->options().paused);
}

TEST_F(AppDelegateTest, QuitFromTheCommand) {
    launch();
    EXPECT_TRUE(delegate->handleControlRequest({"quit", {}}).ok);
    EXPECT_EQ(terminations, 1);
}

TEST_F(AppDelegateTest, AnUnknownCommandIsRefused) {
    launch();
    const auto reply = delegate->handleControlRequest({"dance", {}});
    EXPECT_FALSE(reply.ok);
    EXPECT_NE(reply.text.find("dance"), std::string::npos);
}

TEST_F(AppDelegateTest, StatusAsJsonCarriesTheRuntimeFacts) {
    launch();
    desktop.withFrontApplication("com.apple.TextEdit");
    releaseLanguageChord();
    const auto json = nlohmann::json::parse(delegate->handleControlRequest({"status", {"--json"}}).text);
    EXPECT_EQ(json["version"], "1.2");
    EXPECT_EQ(json["paused"], false);
    EXPECT_EQ(json["monitorRunning"], true);
    EXPECT_EQ(json["permissions"]["accessibility"], true);
    EXPECT_EQ(json["inputSource"]["isRTL"], true);
    EXPECT_EQ(json["options"]["shiftEnglish"], true);
    EXPECT_EQ(json["status"], "Shortcuts are active");
    EXPECT_EQ(json["lastAction"], "Keyboard language: " + fakes::hebrew().localizedName);
    EXPECT_EQ(json["lastDirection"]["count"], 0);
}

TEST_F(AppDelegateTest, StatusIsInEnglishWithTheShownTextBesideIt) {
    launch();
    preferences->choose(AppLanguage::hebrew);
    desktop.withFrontApplication("com.apple.TextEdit");
    releaseLanguageChord();
    const auto hebrew = [](const core::LocalizedText& text) { return text.rendered(AppLanguage::hebrew); };
    const auto json = nlohmann::json::parse(delegate->handleControlRequest({"status", {"--json"}}).text);
    EXPECT_EQ(json["status"], "Shortcuts are active");
    EXPECT_EQ(json["shownStatus"], hebrew(core::texts::shortcutsActive));
    EXPECT_EQ(json["lastAction"], "Keyboard language: " + fakes::hebrew().localizedName);
    EXPECT_EQ(json["shownLastAction"], hebrew(core::texts::keyboardLanguage(fakes::hebrew().localizedName)));
    EXPECT_EQ(json["clipboard"]["status"], "Clipboard history is off");
    EXPECT_EQ(json["clipboard"]["shownStatus"], hebrew(core::texts::clipboardHistoryOff));
    EXPECT_EQ(delegate->handleControlRequest({"status", {}}).text,
              "Quillane 1.2\nShortcuts are active\nKeyboard language: " + fakes::hebrew().localizedName);
}

TEST_F(AppDelegateTest, StatusForPeopleIsShort) {
    launch();
    EXPECT_EQ(delegate->handleControlRequest({"status", {}}).text, "Quillane 1.2\nShortcuts are active");
}

TEST_F(AppDelegateTest, StatusSaysWherePasswordFieldsAreNotRecognized) {
    launch();
    desktop.withFrontApplication("com.apple.TextEdit");
    preferences->choose(AppLanguage::arabic);
    const auto report = [this] {
        return nlohmann::json::parse(delegate->handleControlRequest({"status", {"--json"}}).text)["passwordFields"];
    };
    const auto name = desktop.workspace.frontmostApplication()->name;
    EXPECT_EQ(report(), nlohmann::json({{"recognized", true}, {"status", nullptr}, {"shownStatus", nullptr}}));
    desktop.secureInput.setKnown(false);
    const auto notice = core::texts::passwordFieldsUnrecognized(name);
    EXPECT_EQ(report(), nlohmann::json({{"recognized", false},
                                        {"status", "Password fields in " + name + " cannot be recognized"},
                                        {"shownStatus", notice.rendered(AppLanguage::arabic)}}));
    EXPECT_TRUE(delegate->handleControlRequest({"status", {}})
                    .text.ends_with("\nPassword fields in " + name + " cannot be recognized"));
    desktop.workspace.activateNothing();
    EXPECT_EQ(report()["recognized"], true) << "nothing is typed anywhere";
}

TEST_F(AppDelegateTest, DirectionChordsAreCounted) {
    launch();
    desktop.withFrontApplication("com.apple.TextEdit");
    desktop.press(Modifier::leftControl).press(Modifier::rightShift);
    desktop.release(Modifier::rightShift).release(Modifier::leftControl).settle();
    const auto json = nlohmann::json::parse(delegate->handleControlRequest({"status", {"--json"}}).text);
    EXPECT_EQ(json["lastDirection"]["direction"], "RTL");
    EXPECT_EQ(json["lastDirection"]["count"], 1);
}

TEST_F(AppDelegateTest, EntryOfTheFileManagerFollowsTheLanguage) {
    desktop.servicesMenu.canHaveUserEntry = true;
    launch();
    preferences->choose(AppLanguage::hebrew);
    EXPECT_EQ(desktop.servicesMenu.userEntry, std::nullopt) << "nobody has asked for it";
    desktop.servicesMenu.setUserEntry("שיתוף באמצעות Quillane");
    preferences->choose(AppLanguage::english);
    EXPECT_EQ(desktop.servicesMenu.userEntry, "Share with Quillane");
}

} // namespace
} // namespace quillane
