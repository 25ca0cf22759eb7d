// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "direction/AX.hpp"

#include "fakes/FakeAccessibility.hpp"

#include <gtest/gtest.h>

#include <array>
#include <string>
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

TEST_F(AXFindTest, ReadsSeveralElementsAtOnceWhereTheBackendCan) {
    accessibility.answerAtOnce(4);
    auto& skipped = root.add("AXTable");
    skipped.add("AXButton");
    root.add("AXGroup").add("AXGroup");
    root.add("AXGroup").failing();
    auto& button = root.add("AXGroup").add("AXButton");
    EXPECT_EQ(findButton(), accessibility.reference(button));
    EXPECT_EQ(visited, 7); // the window, its four children and two below them
    std::size_t lists = 0;
    for (const auto& call : accessibility.calls()) {
        lists += call.what == "AXChildren" ? 1U : 0U;
        EXPECT_TRUE(call.what == "AXChildren" || call.what == "AXRole") << call.what;
    }
    EXPECT_EQ(lists, 4U) << "children of the window and its groups, not of the table";
}

TEST_F(AXFindTest, VisitsNoMoreThanTheLimitHoweverManyAreReadAtOnce) {
    for (const std::size_t elements : {1U, 4U, 100U}) {
        accessibility.answerAtOnce(elements);
        auto& window = accessibility.tree(editor).add("AXWindow");
        for (int i = 0; i < 20; ++i) {
            window.add("AXGroup");
        }
        std::size_t count = 0;
        EXPECT_FALSE(ax::find(accessibility, accessibility.reference(window), 10, {},
                              [&](const AXElement&, std::string_view) { return ++count > 10; }));
        EXPECT_EQ(count, 10U) << elements;
    }
}

TEST_F(AXFindTest, DoesNotLookIntoRolesThatTheSearchSkips) {
    constexpr std::array<std::string_view, 2> skipping{"AXMenuBar", "AXToolbar"};
    root.add("AXToolbar").add("AXButton");
    const auto isButton = [](const AXElement&, std::string_view role) { return role == "AXButton"; };
    EXPECT_FALSE(ax::find(accessibility, accessibility.reference(root), 100, skipping, isButton));
    EXPECT_TRUE(ax::find(accessibility, accessibility.reference(root), 100, {}, isButton));
}

TEST_F(AXFindTest, SearchThatHasEndedStaysAsItEnded) {
    auto& button = root.add("AXButton");
    ax::TreeSearch search(accessibility.reference(root), {.limit = 10, .skipping = {}, .reading = {}});
    const auto isButton = [](const ax::Candidate& candidate) { return candidate.role == "AXButton"; };
    using State = ax::TreeSearch::State;
    EXPECT_EQ(search.step(accessibility, isButton), State::searching);
    EXPECT_EQ(search.step(accessibility, isButton), State::found);
    accessibility.forgetCalls();
    EXPECT_EQ(search.step(accessibility, isButton), State::found);
    EXPECT_EQ(search.result(), accessibility.reference(button));
    EXPECT_TRUE(accessibility.calls().empty());
}

TEST_F(AXFindTest, CandidatesHaveTheAttributesThatWereAskedFor) {
    constexpr std::array<std::string_view, 3> reading{"AXTitle", "AXDescription", "AXEnabled"};
    root.add("AXButton").with("AXDescription", std::string(" Home ")).with("AXEnabled", true);
    int seen = 0;
    const ax::Search search{.limit = 10, .skipping = {}, .reading = reading};
    const auto found = ax::find(accessibility, accessibility.reference(root), search, [&](const auto& candidate) {
        ++seen;
        EXPECT_EQ(candidate.text("AXTitle"), std::nullopt);
        EXPECT_EQ(candidate.text("AXEnabled"), std::nullopt) << "no text";
        EXPECT_EQ(candidate.text("AXIdentifier"), std::nullopt) << "not asked for";
        const bool isButton = candidate.role == "AXButton";
        EXPECT_EQ(candidate.text("AXDescription"), isButton ? std::optional<std::string_view>(" Home ") : std::nullopt);
        EXPECT_EQ(candidate.isLabelled({.english = "Home"}), isButton);
        EXPECT_FALSE(candidate.isLabelled({.english = "Insert"}));
        return isButton;
    });
    EXPECT_TRUE(found);
    EXPECT_EQ(seen, 2);
}

class AXTest : public ::testing::Test {
protected:
    [[nodiscard]] AXElement reference(fakes::FakeElement& element) const { return accessibility.reference(element); }

    fakes::FakeAccessibility accessibility;
    fakes::FakeElement& root = accessibility.tree(editor).add("AXWindow");
};

TEST_F(AXTest, FlagIsABooleanOrTheNumbersZeroAndOne) {
    EXPECT_EQ(ax::flag(AXValue(true)), true);
    EXPECT_EQ(ax::flag(AXValue(false)), false);
    EXPECT_EQ(ax::flag(AXValue(std::int64_t{0})), false);
    EXPECT_EQ(ax::flag(AXValue(std::int64_t{1})), true);
    EXPECT_EQ(ax::flag(AXValue(std::int64_t{2})), std::nullopt);
    EXPECT_EQ(ax::flag(AXValue(std::int64_t{-1})), std::nullopt);
    EXPECT_EQ(ax::flag(AXValue(std::string("1"))), std::nullopt);
    EXPECT_EQ(ax::flag(accessibility, reference(root), "AXEnabled"), std::nullopt);
}

TEST_F(AXTest, ValuesOfAnotherTypeAreAbsent) {
    root.with("AXTitle", std::int64_t{1}).with("AXWindow", std::string("window"));
    EXPECT_EQ(ax::string(accessibility, reference(root), "AXTitle"), std::nullopt);
    EXPECT_EQ(ax::element(accessibility, reference(root), "AXWindow"), std::nullopt);
    EXPECT_TRUE(ax::children(accessibility, reference(root), "AXTitle").empty());
}

TEST_F(AXTest, FirstOfARoleAmongElements) {
    auto& group = root.add("AXGroup");
    auto& gone = root.add("AXMenu");
    auto& first = root.add("AXMenu");
    auto& second = root.add("AXMenu");
    gone.failing();
    const std::vector elements{reference(group), reference(gone), reference(first), reference(second)};
    EXPECT_EQ(ax::firstOfRole(accessibility, elements, "AXMenu"), reference(first));
    EXPECT_EQ(ax::firstOfRole(accessibility, elements, "AXGroup"), reference(group));
    EXPECT_EQ(ax::firstOfRole(accessibility, elements, "AXButton"), std::nullopt);
    EXPECT_EQ(ax::firstOfRole(accessibility, {}, "AXMenu"), std::nullopt);
}

TEST_F(AXTest, LabelIsTheTitleElseTheDescriptionElseEmpty) {
    auto& titled =
        root.add("AXButton").with("AXTitle", std::string("Title")).with("AXDescription", std::string("Text"));
    auto& described = root.add("AXButton").with("AXDescription", std::string("Text"));
    auto& silent = root.add("AXButton").failing();
    EXPECT_EQ(ax::labels(accessibility, {reference(titled), reference(described), reference(root), reference(silent)}),
              (std::vector<std::string>{"Title", "Text", "", ""}));
}

TEST_F(AXTest, TextIsWritableByEitherAttribute) {
    auto& field = root.add("AXTextField");
    EXPECT_FALSE(ax::isTextWritable(accessibility, reference(field)));
    field.settable("AXSelectedText");
    EXPECT_TRUE(ax::isTextWritable(accessibility, reference(field)));
    field.settable("AXSelectedText", false).settable("AXValue");
    EXPECT_TRUE(ax::isTextWritable(accessibility, reference(field)));
}

TEST_F(AXTest, DisabledElementsAreNotPressed) {
    auto& button = root.add("AXButton").withAction("AXPress");
    EXPECT_TRUE(ax::press(accessibility, reference(button)));
    EXPECT_TRUE(ax::press(accessibility, reference(button.with("AXEnabled", true))));
    EXPECT_EQ(accessibility.actions().size(), 2U);
    EXPECT_FALSE(ax::press(accessibility, reference(button.with("AXEnabled", false))));
    EXPECT_EQ(accessibility.actions().size(), 2U);
    button.with("AXEnabled", true).withAction("AXPress", [] { return AXActionResult::cannotComplete; });
    EXPECT_FALSE(ax::press(accessibility, reference(button)));
}

TEST_F(AXTest, ClosestLooksAtTheElementFirstAndAtNoMoreThanItsSteps) {
    auto& inner = root.add("AXGroup").add("AXTextArea");
    EXPECT_EQ(ax::closest(accessibility, reference(inner), "AXTextArea", 1), reference(inner));
    EXPECT_EQ(ax::closest(accessibility, reference(inner), "AXWindow", 2), std::nullopt);
    EXPECT_EQ(ax::closest(accessibility, reference(inner), "AXWindow", 3), reference(root));
    EXPECT_EQ(ax::closest(accessibility, reference(inner), "AXWebArea", 100), std::nullopt);
}

} // namespace
} // namespace quillane
