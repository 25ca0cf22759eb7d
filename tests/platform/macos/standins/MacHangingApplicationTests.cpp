// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "direction/AX.hpp"
#include "platform/macos/accessibility/MacAccessibility.hpp"
#include "standins/macos/Mac.hpp"

#include <gtest/gtest.h>

#include <array>
#include <chrono>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using standin::AccessibleElement;

constexpr pid_t editor = 321;
constexpr auto timeout = 150ms; // of the direction commands

/// An application with a tree of three hundred elements, and what waiting for it has cost.
class MacHangingApplicationTest : public ::testing::Test {
protected:
    MacHangingApplicationTest() {
        for (int group = 0; group < 10; ++group) {
            auto& toolbar = tree().root.add("AXGroup");
            for (int button = 0; button < 29; ++button) {
                toolbar.add("AXButton").with("AXTitle", standin::value("Bold"));
            }
        }
        accessibility.setMessagingTimeout(application, timeout);
    }

    standin::AccessibleApplication& tree() { return mac.accessibility.application(editor); }

    [[nodiscard]] std::chrono::milliseconds cost() const {
        return std::chrono::round<std::chrono::milliseconds>(mac.now() - begin);
    }

    /// Searches the whole tree for what is not there.
    void search() {
        const ax::Search whole{.limit = 500, .skipping = {}, .reading = ax::labelNames};
        EXPECT_FALSE(ax::find(accessibility, application, whole, [](const ax::Candidate& candidate) {
            return candidate.isLabelled({.english = "Right-to-Left"});
        }));
    }

    void pass(std::chrono::milliseconds time) {
        mac.pass(time);
        begin += time;
    }

    standin::Mac mac;
    MacAccessibility accessibility{[this] { return mac.now(); }};
    AXElement application = accessibility.application(editor);
    standin::Mac::Clock::time_point begin = mac.now();
};

TEST_F(MacHangingApplicationTest, SearchReadsAttributesAndChildrenInOneCall) {
    search();
    EXPECT_EQ(tree().calls, 301) << "one for each element";
    EXPECT_EQ(cost(), 0ms);
}

TEST_F(MacHangingApplicationTest, EverythingTogetherCostsOneTimeout) {
    tree().hangs = true;
    search();
    EXPECT_EQ(tree().calls, 1);
    search();
    constexpr std::array<std::string_view, 1> names{"AXRole"};
    EXPECT_FALSE(accessibility.attribute(application, "AXFocusedUIElement"));
    EXPECT_FALSE(accessibility.attributes(application, names));
    EXPECT_FALSE(accessibility.isAttributeSettable(application, "AXValue"));
    EXPECT_FALSE(accessibility.setAttribute(application, "AXRole", std::string("a")));
    EXPECT_TRUE(accessibility.actionNames(application).empty());
    EXPECT_FALSE(accessibility.observe(application, "AXMenuOpened", [](const AXElement&) {}));
    EXPECT_EQ(cost(), timeout);
    EXPECT_EQ(tree().calls, 1);
}

TEST_F(MacHangingApplicationTest, SearchEndsWhereTheApplicationStopsToAnswer) {
    int visited = 0;
    const ax::Search whole{.limit = 500, .skipping = {}, .reading = {}};
    EXPECT_FALSE(ax::find(accessibility, application, whole, [&](const ax::Candidate&) {
        tree().hangs = ++visited == 20;
        return false;
    }));
    EXPECT_EQ(visited, 20);
    EXPECT_EQ(tree().calls, 21);
    EXPECT_EQ(cost(), timeout);
}

TEST_F(MacHangingApplicationTest, AbsentRoleIsNoReasonToEnd) {
    auto& odd = tree().root.add("AXGroup");
    odd.failing("AXRole", kAXErrorNoValue);
    auto& gone = tree().root.add("AXGroup");
    odd.add("AXButton").with("AXTitle", standin::value("Right-to-Left"));
    const ax::Search whole{.limit = 500, .skipping = {}, .reading = ax::labelNames};
    const auto found = ax::find(accessibility, application, whole, [&](const ax::Candidate& candidate) {
        gone.isGone = true; // between the reading of its parent's children and its own
        return candidate.isLabelled({.english = "Right-to-Left"});
    });
    EXPECT_TRUE(found);
    EXPECT_TRUE(accessibility.isAnswering(application));
}

TEST_F(MacHangingApplicationTest, IsAskedAgainAfterASecond) {
    tree().hangs = true;
    EXPECT_FALSE(accessibility.attribute(application, "AXRole"));
    EXPECT_FALSE(accessibility.isAnswering(application));
    pass(999ms);
    tree().hangs = false;
    EXPECT_FALSE(accessibility.attribute(application, "AXRole"));
    pass(1ms);
    EXPECT_TRUE(accessibility.isAnswering(application));
    EXPECT_TRUE(accessibility.attribute(application, "AXRole"));
    EXPECT_EQ(cost(), timeout);
}

TEST_F(MacHangingApplicationTest, AnAnswerEndsTheSilence) {
    const auto typing = accessibility.application(editor);
    accessibility.setMessagingTimeout(typing, 15ms);
    tree().answersAfter = 20ms;
    EXPECT_FALSE(accessibility.attribute(typing, "AXRole"));
    EXPECT_FALSE(accessibility.isAnswering(typing));
    EXPECT_TRUE(accessibility.attribute(application, "AXRole")) << "may wait ten times as long";
    EXPECT_TRUE(accessibility.isAnswering(typing));
}

TEST_F(MacHangingApplicationTest, ShortWaitIsFollowedByAShortSilence) {
    const auto typing = accessibility.application(editor);
    accessibility.setMessagingTimeout(typing, 15ms);
    tree().hangs = true;
    EXPECT_FALSE(accessibility.attribute(typing, "AXRole"));
    pass(149ms);
    EXPECT_FALSE(accessibility.isAnswering(typing));
    pass(1ms);
    EXPECT_TRUE(accessibility.isAnswering(typing));
}

TEST_F(MacHangingApplicationTest, RefusalAtOnceIsNoSilence) {
    tree().refusesAtOnce = true;
    EXPECT_FALSE(accessibility.attribute(application, "AXRole"));
    tree().refusesAtOnce = false;
    EXPECT_TRUE(accessibility.attribute(application, "AXRole"));
}

TEST_F(MacHangingApplicationTest, SystemTimeoutIsRememberedAsWell) {
    const auto unbounded = accessibility.application(editor);
    tree().hangs = true;
    EXPECT_FALSE(accessibility.attribute(unbounded, "AXRole"));
    EXPECT_FALSE(accessibility.attribute(unbounded, "AXRole"));
    EXPECT_EQ(tree().calls, 1);
}

TEST_F(MacHangingApplicationTest, OtherApplicationsAreAsked) {
    constexpr pid_t other = 322;
    static_cast<void>(mac.accessibility.application(other));
    tree().hangs = true;
    search();
    EXPECT_TRUE(accessibility.attribute(accessibility.application(other), "AXRole"));
}

TEST_F(MacHangingApplicationTest, ActionsAreTriedAllTheSame) {
    tree().hangs = true;
    EXPECT_FALSE(accessibility.attribute(application, "AXRole"));
    EXPECT_EQ(accessibility.performAction(application, "AXPress"), AXActionResult::cannotComplete);
    EXPECT_EQ(tree().calls, 2);
}

} // namespace
} // namespace quillane
