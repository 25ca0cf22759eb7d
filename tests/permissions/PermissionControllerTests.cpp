// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "permissions/PermissionController.hpp"

#include "core/clipboard/PasteboardTypes.hpp"
#include "core/localization/Texts.hpp"
#include "fakes/FakeDesktop.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace quillane {
namespace {

using core::MacPermission;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PermissionControllerTest : public ::testing::Test {
protected:
    PermissionControllerTest() { desktop.withPermissions({}); }

    PermissionController& controller() {
        if (!controller_) {
            controller_.emplace(desktop.platform, core::ApplicationLocation{"/Applications/Quillane.app", installed});
            controller_->presentGuide = [this](MacPermission permission) { guided.push_back(permission); };
            controller_->applicationIsActive = [this] { return active; };
            controller_->terminate = [this] { ++terminations; };
        }
        return *controller_;
    }

    [[nodiscard]] std::string feedback() { return controller().feedback().rendered(core::AppLanguage::english); }

    fakes::FakeDesktop desktop;
    fakes::FakePermissionService& service = desktop.permissions;
    bool installed = true;
    bool active = true;
    int terminations = 0;
    std::vector<MacPermission> guided;

private:
    std::optional<PermissionController> controller_;
};

TEST_F(PermissionControllerTest, ARequestShowsTheGuideAndSaysWhatToDo) {
    controller().request(MacPermission::accessibility);
    EXPECT_THAT(service.requests(), ElementsAre(MacPermission::accessibility));
    EXPECT_THAT(guided, ElementsAre(MacPermission::accessibility));
    EXPECT_EQ(desktop.windowTraits.activations, 1);
    EXPECT_EQ(feedback(), "Accessibility requested. Enable Quillane in the list, then return here.");
    EXPECT_FALSE(controller().isRequesting());
    EXPECT_THAT(*desktop.userDefaults.stringArray("QuillanePermissionRequestsV1"), ElementsAre("accessibility"));
}

TEST_F(PermissionControllerTest, WhereARequestIsEnoughNoListIsSpokenOf) {
    service.grantOnRequest();
    controller().request(MacPermission::accessibility);
    EXPECT_THAT(guided, IsEmpty());
    EXPECT_EQ(feedback(), "Accessibility was turned on for this session.");
    EXPECT_TRUE(controller().granted().contains(MacPermission::accessibility));
}

TEST_F(PermissionControllerTest, AccessibilityIsReportedOnOnlyOnceItIs) {
    service.grantOnRequest();
    service.ignoreRequests();
    int changes = 0;
    const auto token = controller().onChanged([&] { ++changes; });
    controller().request(MacPermission::accessibility);
    controller().refresh();
    EXPECT_EQ(feedback(), "");
    EXPECT_EQ(changes, 0);
    service.grant(MacPermission::accessibility);
    controller().refresh();
    EXPECT_EQ(feedback(), "Accessibility was turned on for this session.");
    EXPECT_EQ(changes, 1);
    service.revoke(MacPermission::accessibility);
    controller().refresh();
    EXPECT_EQ(feedback(), "") << "it is off again";
    service.grant(MacPermission::accessibility);
    controller().refresh();
    EXPECT_EQ(feedback(), "") << "somebody else has turned it on";
}

TEST_F(PermissionControllerTest, AnEarlierGrantIsNotReportedAsTurnedOn) {
    service.grantOnRequest();
    service.grant(MacPermission::accessibility);
    service.ignoreRequests();
    controller().request(MacPermission::accessibility);
    controller().request(MacPermission::inputMonitoring);
    controller().refresh();
    EXPECT_EQ(feedback(), "");
}

TEST_F(PermissionControllerTest, WhereARequestIsTheGrantItTakesAClick) {
    service.grantOnRequest();
    service.grant(MacPermission::inputMonitoring);
    controller().refresh();
    controller().requestNextIfNeeded();
    EXPECT_THAT(service.requests(), IsEmpty());
    EXPECT_FALSE(desktop.userDefaults.object("QuillanePermissionRequestsV1"));
    controller().request(MacPermission::accessibility);
    EXPECT_TRUE(controller().granted().contains(MacPermission::accessibility));
}

TEST_F(PermissionControllerTest, ACopyOutsideAnApplicationsFolderNeverAsks) {
    installed = false;
    controller().request(MacPermission::accessibility);
    controller().requestNextIfNeeded();
    EXPECT_THAT(service.requests(), IsEmpty());
    EXPECT_THAT(guided, IsEmpty());
    EXPECT_FALSE(desktop.userDefaults.object("QuillanePermissionRequestsV1"));
}

TEST_F(PermissionControllerTest, ARequestWithinARequestIsPassedOver) {
    controller().presentGuide = [this](MacPermission) { controller().request(MacPermission::inputMonitoring); };
    controller().request(MacPermission::accessibility);
    EXPECT_THAT(service.requests(), ElementsAre(MacPermission::accessibility));
}

TEST_F(PermissionControllerTest, AutomaticRequestsAreMadeOnceEachAndOnlyInFront) {
    active = false;
    controller().requestNextIfNeeded();
    EXPECT_THAT(service.requests(), IsEmpty());
    active = true;
    controller().requestNextIfNeeded();
    controller().requestNextIfNeeded();
    EXPECT_THAT(service.requests(), ElementsAre(MacPermission::inputMonitoring));
    service.grant(MacPermission::inputMonitoring);
    controller().refresh();
    controller().requestNextIfNeeded();
    EXPECT_THAT(service.requests(), ElementsAre(MacPermission::inputMonitoring, MacPermission::accessibility));
}

TEST_F(PermissionControllerTest, RequestsAreRememberedAndUnknownTextsAreDropped) {
    desktop.userDefaults.setObject("QuillanePermissionRequestsV1",
                                   core::PropertyListValue::Array{"inputMonitoring", "somethingElse"});
    controller().requestNextIfNeeded();
    EXPECT_THAT(service.requests(), IsEmpty());
    controller().request(MacPermission::accessibility);
    EXPECT_THAT(*desktop.userDefaults.stringArray("QuillanePermissionRequestsV1"),
                ElementsAre("inputMonitoring", "accessibility"));
}

TEST_F(PermissionControllerTest, RefreshingUnchangedGrantsNotifiesNobody) {
    int changes = 0;
    const auto token = controller().onChanged([&] { ++changes; });
    controller().refresh();
    EXPECT_EQ(changes, 0);
    service.grant(MacPermission::accessibility);
    controller().refresh();
    controller().refresh();
    EXPECT_EQ(changes, 1);
    service.revoke(MacPermission::accessibility);
    controller().refresh();
    EXPECT_EQ(changes, 2);
    EXPECT_THAT(controller().granted(), IsEmpty());
}

TEST_F(PermissionControllerTest, OpeningTheSettingsShowsTheGuide) {
    controller().openSettings(MacPermission::inputMonitoring);
    EXPECT_THAT(service.opened(), ElementsAre(MacPermission::inputMonitoring));
    EXPECT_THAT(guided, ElementsAre(MacPermission::inputMonitoring));
    EXPECT_THAT(service.requests(), IsEmpty());
}

TEST_F(PermissionControllerTest, WhereARequestIsEnoughTheSettingsOpenWithoutTheGuide) {
    service.grantOnRequest();
    controller().openSettings(MacPermission::accessibility);
    EXPECT_THAT(service.opened(), ElementsAre(MacPermission::accessibility));
    EXPECT_THAT(guided, IsEmpty());
}

TEST_F(PermissionControllerTest, NothingIsAskedOfACallerThatGivesNoCallbacks) {
    PermissionController bare(desktop.platform, {"/Applications/Quillane.app", true});
    bare.requestNextIfNeeded();
    EXPECT_THAT(service.requests(), IsEmpty()) << "nobody says that the application is in front";
    bare.request(MacPermission::inputMonitoring);
    bare.openSettings(MacPermission::inputMonitoring);
    EXPECT_THAT(service.requests(), ElementsAre(MacPermission::inputMonitoring));
    EXPECT_THAT(service.opened(), ElementsAre(MacPermission::inputMonitoring));
    bare.restart();
    EXPECT_EQ(desktop.launcher.launched.size(), 1U);
}

TEST_F(PermissionControllerTest, ARequestForInputMonitoringSaysWhatToDo) {
    int changes = 0;
    const auto token = controller().onChanged([&] { ++changes; });
    controller().request(MacPermission::inputMonitoring);
    EXPECT_EQ(feedback(), "Input Monitoring requested. Enable Quillane in the list, then return here.");
    EXPECT_EQ(changes, 1);
}

TEST_F(PermissionControllerTest, WhileItRequestsItSaysSo) {
    bool during = false;
    controller().presentGuide = [&](MacPermission) {
        during = controller().isRequesting();
        controller().requestNextIfNeeded();
    };
    controller().request(MacPermission::accessibility);
    EXPECT_TRUE(during);
    EXPECT_THAT(service.requests(), ElementsAre(MacPermission::accessibility));
}

TEST_F(PermissionControllerTest, APathThatCannotBeCopiedIsNotReportedAsCopied) {
    desktop.pasteboard.refuseWrites();
    controller().copyPath();
    EXPECT_EQ(desktop.pasteboard.clears(), 1);
    EXPECT_EQ(feedback(), "");
}

TEST_F(PermissionControllerTest, ThePathIsCopiedAndExplained) {
    controller().copyPath();
    EXPECT_EQ(desktop.pasteboard.string(core::pasteboardTypes::string), "/Applications/Quillane.app");
    EXPECT_EQ(feedback(), "App path copied. In the Add dialog, press Command + Shift + G and paste it.");
}

TEST_F(PermissionControllerTest, RestartingLeavesAFlagStartsTheWaitingShellAndEnds) {
    controller().restart();
    EXPECT_EQ(desktop.userDefaults.boolean("QuillaneShowPermissionsAfterRestart"), true);
    ASSERT_EQ(desktop.launcher.launched.size(), 1U);
    EXPECT_EQ(desktop.launcher.launched.front(), core::relaunchCommand(::getpid(), "/Applications/Quillane.app"));
    EXPECT_EQ(terminations, 1);
}

TEST_F(PermissionControllerTest, AFailedRestartKeepsRunningAndSaysSo) {
    desktop.launcher.fails = true;
    controller().restart();
    EXPECT_EQ(terminations, 0);
    EXPECT_EQ(feedback(), "Could not reopen automatically. Quit Quillane and open it again from Applications.");
}

} // namespace
} // namespace quillane
