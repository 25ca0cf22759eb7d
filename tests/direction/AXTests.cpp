// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "direction/AX.hpp"

#include "fakes/FakeAccessibility.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace quillane {
namespace {

constexpr pid_t editor = 321;

class AXFindTest : public ::testing::Test {
protected:
    /// Searches a window for a button, and calls `meanwhile` for each element that is visited.
    std::optional<AXElement> findButton(const std::function<void()>& meanwhile = [] {}) {
        visited = 0;
        return ax::find(accessibility, accessibility.reference(root), 500, {},
                        [&](const AXElement&, std::string_view role) {
                            ++visited;
                            meanwhile();
                            return role == "AXButton";
                        });
    }

    fakes::FakeAccessibility accessibility;
    fakes::FakeElement& root = accessibility.tree(editor).add("AXWindow"); ///< beside which there is a menu bar
    int visited = 0;
};

TEST_F(AXFindTest, EndsWhenTheApplicationStopsToAnswer) {
    for (int i = 0; i < 5; ++i) {
        root.add("AXGroup").add("AXButton");
    }
    EXPECT_FALSE(findButton([&] {
        if (visited == 3) {
            accessibility.stopAnswering(editor);
        }
    }));
    EXPECT_EQ(visited, 3);
    EXPECT_EQ(accessibility.calls().size(), 4U) << "only the first one without an answer";
}

TEST_F(AXFindTest, ElementThatFailsAloneIsPassedOver) {
    root.add("AXGroup").failing();
    auto& button = root.add("AXButton");
    EXPECT_EQ(findButton(), accessibility.reference(button));
    EXPECT_EQ(visited, 3);
}

TEST_F(AXFindTest, ElementWithoutARoleIsLookedInto) {
    auto& button = root.add("").without("AXRole").add("AXButton");
    EXPECT_EQ(findButton(), accessibility.reference(button));
}

TEST_F(AXFindTest, ReadsAnElementAndItsChildrenInOneCall) {
    root.add("AXGroup").add("AXButton");
    EXPECT_TRUE(findButton());
    EXPECT_EQ(accessibility.calls().size(), 3U);
}

} // namespace
} // namespace quillane
