// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "system/LoginItemController.hpp"

#include "fakes/FakeLoginItemService.hpp"

#include <gtest/gtest.h>

#include <array>
#include <utility>

namespace quillane {
namespace {

class LoginItemControllerTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string status() { return controller.statusText().rendered(core::AppLanguage::english); }

    fakes::FakeLoginItemService service;
    LoginItemController controller{service, true};
};

TEST_F(LoginItemControllerTest, EachStatusHasItsText) {
    constexpr std::array expected{
        std::pair{LoginItemStatus::notRegistered, "Off — open Quillane manually"},
        std::pair{LoginItemStatus::enabled, "On — Quillane will start when you sign in"},
        std::pair{LoginItemStatus::requiresApproval, "Approval in System Settings is required to launch at login"},
        std::pair{LoginItemStatus::notFound, "Automatic startup has not been set up yet"},
        std::pair{LoginItemStatus::unknown, "Could not read the login item status"},
    };
    for (const auto& [value, text] : expected) {
        service.current = value;
        controller.refresh();
        EXPECT_EQ(status(), text);
        EXPECT_EQ(controller.isOn(), value == LoginItemStatus::enabled);
    }
}

TEST_F(LoginItemControllerTest, SwitchesOnAndOff) {
    controller.setEnabled(true);
    EXPECT_TRUE(controller.isOn());
    controller.setEnabled(true);
    EXPECT_EQ(service.enablings, 1);
    controller.setEnabled(false);
    EXPECT_FALSE(controller.isOn());
    EXPECT_EQ(service.disablings, 1);
    EXPECT_FALSE(controller.errorMessage());
}

TEST_F(LoginItemControllerTest, WhileAnApprovalIsMissingTurningOnOpensTheSettings) {
    service.current = LoginItemStatus::requiresApproval;
    controller.setEnabled(true);
    EXPECT_EQ(service.openings, 1);
    EXPECT_EQ(service.enablings, 0);
}

TEST_F(LoginItemControllerTest, AMissingApprovalIsNotAnError) {
    service.fails = true;
    service.statusAfterFailure = LoginItemStatus::requiresApproval;
    controller.setEnabled(true);
    EXPECT_FALSE(controller.errorMessage());
    EXPECT_EQ(controller.status(), LoginItemStatus::requiresApproval);
}

TEST_F(LoginItemControllerTest, AFailureIsShownUntilTheNextChange) {
    service.fails = true;
    controller.setEnabled(true);
    ASSERT_TRUE(controller.errorMessage());
    EXPECT_EQ(controller.errorMessage()->rendered(core::AppLanguage::english),
              "Could not change automatic startup. Try again or open Login Items settings.");
    service.fails = false;
    controller.setEnabled(true);
    EXPECT_FALSE(controller.errorMessage());
}

TEST_F(LoginItemControllerTest, ASecondToggleWhileAChangeRunsIsIgnored) {
    service.duringChange = [this] {
        EXPECT_TRUE(controller.isChanging());
        controller.setEnabled(false);
    };
    controller.setEnabled(true);
    EXPECT_EQ(service.disablings, 0);
    EXPECT_TRUE(controller.isOn());
    EXPECT_FALSE(controller.isChanging());
}

TEST_F(LoginItemControllerTest, AFailureIsAnnounced) {
    int changes = 0;
    const auto token = controller.onChanged([&] { ++changes; });
    service.fails = true;
    controller.setEnabled(true);
    EXPECT_EQ(changes, 1);
}

TEST_F(LoginItemControllerTest, WhatHasBeenChangedElsewhereIsNotChangedAgain) {
    service.current = LoginItemStatus::enabled;
    controller.setEnabled(true);
    EXPECT_EQ(service.enablings, 0);
    EXPECT_TRUE(controller.isOn());
    service.current = LoginItemStatus::notRegistered;
    controller.setEnabled(false);
    EXPECT_EQ(service.disablings, 0);
    EXPECT_FALSE(controller.isOn());
}

TEST_F(LoginItemControllerTest, TurningOffNeedsNoApproval) {
    service.current = LoginItemStatus::requiresApproval;
    controller.setEnabled(false);
    EXPECT_EQ(service.openings, 0);
    EXPECT_EQ(service.disablings, 0);
}

TEST_F(LoginItemControllerTest, ACopyThatIsNotInstalledChangesNothing) {
    LoginItemController elsewhere(service, false);
    elsewhere.setEnabled(true);
    EXPECT_EQ(service.enablings, 0);
}

TEST_F(LoginItemControllerTest, AnnouncesOnlyChanges) {
    int changes = 0;
    const auto token = controller.onChanged([&] { ++changes; });
    controller.refresh();
    EXPECT_EQ(changes, 0);
    service.current = LoginItemStatus::enabled;
    controller.refresh();
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace quillane
