// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Workspace.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include <unistd.h>

namespace quillane::testing {

/// What every Workspace promises. The driver is constructed for each test, with no application open, and has:
///
///     Workspace& workspace();
///     static constexpr std::string_view first, second;  // bundle identifiers of two applications that it can open
///     pid_t open(std::string_view bundleID);            // opens it and brings it to the front
///     void activate(pid_t);                             // brings an open one to the front
///     bool waitUntil(std::function<bool()>);            // lets the world go on; false when it takes too long
template <typename Driver>
class WorkspaceContract : public ::testing::Test {
protected:
    [[nodiscard]] bool comesToFront(pid_t pid) {
        return driver.waitUntil([&] {
            const auto front = driver.workspace().frontmostApplication();
            return front && front->pid == pid;
        });
    }

    static constexpr pid_t nobody = std::numeric_limits<pid_t>::max();

    Driver driver;
};

TYPED_TEST_SUITE_P(WorkspaceContract);

TYPED_TEST_P(WorkspaceContract, ReportsTheApplicationInFront) {
    const auto first = this->driver.open(TypeParam::first);
    ASSERT_TRUE(this->comesToFront(first));
    EXPECT_EQ(this->driver.workspace().frontmostApplication()->bundleID, TypeParam::first);
    const auto second = this->driver.open(TypeParam::second);
    ASSERT_TRUE(this->comesToFront(second));
    EXPECT_EQ(this->driver.workspace().frontmostApplication()->bundleID, TypeParam::second);
}

TYPED_TEST_P(WorkspaceContract, GivesNoticeOfEachActivation) {
    const auto first = this->driver.open(TypeParam::first);
    ASSERT_TRUE(this->comesToFront(first));
    const auto second = this->driver.open(TypeParam::second);
    ASSERT_TRUE(this->comesToFront(second));
    pid_t noticed = 0;
    const auto token = this->driver.workspace().onDidActivateApplication([&] {
        const auto front = this->driver.workspace().frontmostApplication();
        noticed = front ? front->pid : 0;
    });
    for (const auto pid : {first, second, first}) {
        this->driver.activate(pid);
        EXPECT_TRUE(this->driver.waitUntil([&] { return noticed == pid; }));
    }
}

TYPED_TEST_P(WorkspaceContract, CallsBackOnceItIsKnownWhoIsInFront) {
    const auto process = this->driver.open(TypeParam::first);
    ASSERT_TRUE(this->comesToFront(process));
    int calls = 0;
    this->driver.workspace().whenFrontIsKnown([&] { ++calls; });
    EXPECT_TRUE(this->driver.waitUntil([&] { return calls == 1; }));
    EXPECT_EQ(this->driver.workspace().frontmostApplication()->pid, process);
}

TYPED_TEST_P(WorkspaceContract, KnowsWhichProcessesRun) {
    const auto pid = this->driver.open(TypeParam::first);
    ASSERT_TRUE(this->comesToFront(pid));
    EXPECT_TRUE(this->driver.workspace().isRunning(pid));
    EXPECT_FALSE(this->driver.workspace().isRunning(this->nobody));
    EXPECT_FALSE(this->driver.workspace().isRunning(0));
    EXPECT_FALSE(this->driver.workspace().isRunning(-1));
}

TYPED_TEST_P(WorkspaceContract, ADroppedTokenEndsTheNotices) {
    int dropped = 0;
    int kept = 0;
    auto token = this->driver.workspace().onDidActivateApplication([&] { ++dropped; });
    const auto other = this->driver.workspace().onDidActivateApplication([&] { ++kept; });
    token = {};
    this->driver.open(TypeParam::first);
    EXPECT_TRUE(this->driver.waitUntil([&] { return kept >= 1; }));
    EXPECT_EQ(dropped, 0);
}

TYPED_TEST_P(WorkspaceContract, FindsRunningApplicationsByTheirExactIdentifier) {
    EXPECT_TRUE(this->driver.workspace().runningApplications(TypeParam::first).empty());
    const auto pid = this->driver.open(TypeParam::first);
    ASSERT_TRUE(this->comesToFront(pid));
    this->driver.open(TypeParam::second);
    const auto found = this->driver.workspace().runningApplications(TypeParam::first);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().pid, pid);
    EXPECT_NE(found.front().pid, ::getpid());
    EXPECT_TRUE(this->driver.workspace().runningApplications(std::string(TypeParam::first) + "x").empty());
    EXPECT_TRUE(this->driver.workspace().runningApplications("").empty());
}

TYPED_TEST_P(WorkspaceContract, AnApplicationThatIsAskedToQuitIsGone) {
    const auto pid = this->driver.open(TypeParam::first);
    ASSERT_TRUE(this->comesToFront(pid));
    EXPECT_TRUE(this->driver.workspace().terminate(pid));
    EXPECT_TRUE(
        this->driver.waitUntil([&] { return this->driver.workspace().runningApplications(TypeParam::first).empty(); }));
}

TYPED_TEST_P(WorkspaceContract, AProcessThatDoesNotRunCannotBeAskedToQuit) {
    EXPECT_FALSE(this->driver.workspace().terminate(this->nobody));
}

TYPED_TEST_P(WorkspaceContract, AnApplicationBehindComesToTheFrontWhenAsked) {
    const auto first = this->driver.open(TypeParam::first);
    ASSERT_TRUE(this->comesToFront(first));
    const auto second = this->driver.open(TypeParam::second);
    ASSERT_TRUE(this->comesToFront(second));
    bool isInsideCall = false;
    bool wasNotified = false;
    const auto token = this->driver.workspace().onDidActivateApplication([&] {
        EXPECT_FALSE(isInsideCall);
        wasNotified = true;
    });
    isInsideCall = true;
    EXPECT_TRUE(this->driver.workspace().activateApplication(first));
    isInsideCall = false;
    EXPECT_TRUE(this->comesToFront(first));
    EXPECT_TRUE(this->driver.waitUntil([&] { return wasNotified; }));
    EXPECT_FALSE(this->driver.workspace().activateApplication(this->nobody));
}

REGISTER_TYPED_TEST_SUITE_P(WorkspaceContract, ReportsTheApplicationInFront, GivesNoticeOfEachActivation,
                            CallsBackOnceItIsKnownWhoIsInFront, KnowsWhichProcessesRun, ADroppedTokenEndsTheNotices,
                            FindsRunningApplicationsByTheirExactIdentifier, AnApplicationBehindComesToTheFrontWhenAsked,
                            AnApplicationThatIsAskedToQuitIsGone, AProcessThatDoesNotRunCannotBeAskedToQuit);

} // namespace quillane::testing
