// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/permissions/PermissionSetupPolicy.hpp"

#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <string>

namespace quillane::core {
namespace {

namespace fs = std::filesystem;

constexpr auto inputMonitoring = MacPermission::inputMonitoring;
constexpr auto accessibility = MacPermission::accessibility;

TEST(MacPermission, RawValuesLeadThereAndBack) {
    EXPECT_EQ(rawValue(inputMonitoring), "inputMonitoring");
    EXPECT_EQ(rawValue(accessibility), "accessibility");
    EXPECT_EQ(permissionFromRawValue("inputMonitoring"), inputMonitoring);
    EXPECT_EQ(permissionFromRawValue("accessibility"), accessibility);
    EXPECT_EQ(permissionFromRawValue("Accessibility"), std::nullopt);
    EXPECT_EQ(permissionFromRawValue(""), std::nullopt);
}

TEST(PermissionSetupPolicy, AsksForInputMonitoringFirst) {
    EXPECT_EQ(PermissionSetupPolicy{}.nextAutomaticRequest({}, true), inputMonitoring);
    EXPECT_EQ(PermissionSetupPolicy{{accessibility}}.nextAutomaticRequest({}, true), inputMonitoring);
}

TEST(PermissionSetupPolicy, DoesNotMoveOnFromARequestWithoutGrant) {
    PermissionSetupPolicy policy;
    policy.recordRequest(inputMonitoring);
    EXPECT_EQ(policy.nextAutomaticRequest({}, true), std::nullopt);
}

TEST(PermissionSetupPolicy, AsksForAccessibilitySecondAndOnce) {
    PermissionSetupPolicy policy;
    EXPECT_EQ(policy.nextAutomaticRequest({inputMonitoring}, true), accessibility);
    policy.recordRequest(accessibility);
    EXPECT_EQ(policy.nextAutomaticRequest({inputMonitoring}, true), std::nullopt);
}

TEST(PermissionSetupPolicy, WithAccessibilityItAsksForNothing) {
    EXPECT_EQ(PermissionSetupPolicy{}.nextAutomaticRequest({accessibility}, true), std::nullopt);
    EXPECT_EQ(PermissionSetupPolicy{}.nextAutomaticRequest({accessibility, inputMonitoring}, true), std::nullopt);
}

TEST(PermissionSetupPolicy, NotInstalledItAsksForNothing) {
    EXPECT_EQ(PermissionSetupPolicy{}.nextAutomaticRequest({}, false), std::nullopt);
    EXPECT_EQ(PermissionSetupPolicy{}.nextAutomaticRequest({inputMonitoring}, false), std::nullopt);
}

TEST(PermissionSetupPolicy, RecordingARequestTwiceIsOnce) {
    PermissionSetupPolicy policy;
    policy.recordRequest(accessibility);
    policy.recordRequest(accessibility);
    EXPECT_EQ(policy.requested, std::set{accessibility});
}

TEST(PermissionSetupPolicy, TheMonitorNeedsAccessibilityAlone) {
    EXPECT_FALSE(PermissionSetupPolicy::canStartKeyboardMonitor({}));
    EXPECT_FALSE(PermissionSetupPolicy::canStartKeyboardMonitor({inputMonitoring}));
    EXPECT_TRUE(PermissionSetupPolicy::canStartKeyboardMonitor({accessibility}));
    EXPECT_TRUE(PermissionSetupPolicy::canStartKeyboardMonitor({accessibility, inputMonitoring}));
}

/// A home folder of its own, with an Applications folder.
class PermissionSetupPolicyInstalledTest : public ::testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(home_ / "Applications" / "Quillane.app");
        fs::create_directories(root_ / "elsewhere" / "Quillane.app");
    }

    [[nodiscard]] bool isInstalled(const fs::path& application) const {
        return PermissionSetupPolicy::isInstalled(application, home_);
    }

private:
    live::TemporaryFolder temporary_;

protected:
    const fs::path root_ = temporary_.path();
    const fs::path home_ = root_ / "home";
};

TEST_F(PermissionSetupPolicyInstalledTest, InTheApplicationsFolderOfTheSystem) {
    EXPECT_TRUE(isInstalled("/Applications/Quillane.app"));
    EXPECT_TRUE(isInstalled("/Applications/Quillane.app/"));
    EXPECT_TRUE(isInstalled("/Applications/Utilities/Quillane.app"));
}

TEST_F(PermissionSetupPolicyInstalledTest, InTheApplicationsFolderOfTheHome) {
    EXPECT_TRUE(isInstalled(home_ / "Applications" / "Quillane.app"));
    EXPECT_TRUE(isInstalled((home_ / "Applications" / "Quillane.app").string() + "/"));
    EXPECT_TRUE(isInstalled(home_ / "Applications" / "Sub" / "Quillane.app")) << "it need not exist";
}

TEST_F(PermissionSetupPolicyInstalledTest, AFolderThatOnlyBeginsWithTheNameIsAnother) {
    EXPECT_FALSE(isInstalled("/Applications Old/Quillane.app"));
    EXPECT_FALSE(isInstalled("/Applications.app"));
    EXPECT_FALSE(isInstalled(home_ / "Applications Old" / "Quillane.app"));
}

TEST_F(PermissionSetupPolicyInstalledTest, NowhereElse) {
    EXPECT_FALSE(isInstalled(root_ / "elsewhere" / "Quillane.app"));
    EXPECT_FALSE(isInstalled("/Volumes/Quillane/Quillane.app"));
    EXPECT_FALSE(isInstalled("/Applications/../tmp/Quillane.app"));
    EXPECT_FALSE(isInstalled("/applications/Quillane.app"));
}

TEST_F(PermissionSetupPolicyInstalledTest, OnlyAnApplicationBundle) {
    EXPECT_FALSE(isInstalled("/Applications/Quillane"));
    EXPECT_FALSE(isInstalled("/Applications/Quillane.App"));
    EXPECT_FALSE(isInstalled("/Applications/.app"));
    EXPECT_FALSE(isInstalled("/Applications/"));
    EXPECT_FALSE(isInstalled(""));
    EXPECT_FALSE(isInstalled("Applications/Quillane.app"));
}

TEST_F(PermissionSetupPolicyInstalledTest, LinksAreFollowed) {
    fs::create_directory_symlink(home_ / "Applications" / "Quillane.app", root_ / "Link.app");
    EXPECT_TRUE(isInstalled(root_ / "Link.app"));
    fs::create_directory_symlink(root_ / "elsewhere" / "Quillane.app", home_ / "Applications" / "Out.app");
    EXPECT_FALSE(isInstalled(home_ / "Applications" / "Out.app"));
}

TEST_F(PermissionSetupPolicyInstalledTest, AHomeFolderThatIsALinkIsFollowed) {
    fs::create_directory_symlink(home_, root_ / "linked");
    EXPECT_TRUE(PermissionSetupPolicy::isInstalled(home_ / "Applications" / "Quillane.app", root_ / "linked"));
    EXPECT_TRUE(PermissionSetupPolicy::isInstalled(root_ / "linked" / "Applications" / "Quillane.app", home_));
}

TEST_F(PermissionSetupPolicyInstalledTest, ACircularLinkIsNotInstalled) {
    fs::create_symlink(root_ / "a.app", root_ / "b.app");
    fs::create_symlink(root_ / "b.app", root_ / "a.app");
    EXPECT_FALSE(isInstalled(root_ / "a.app"));
}

TEST_F(PermissionSetupPolicyInstalledTest, WithoutAHomeFolderOnlyTheSystemCounts) {
    EXPECT_TRUE(PermissionSetupPolicy::isInstalled("/Applications/Quillane.app", ""));
    EXPECT_FALSE(PermissionSetupPolicy::isInstalled(home_ / "Applications" / "Quillane.app", ""));
}

} // namespace
} // namespace quillane::core
