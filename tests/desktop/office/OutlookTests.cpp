// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/office/LiveOffice.hpp"

namespace quillane::live {
namespace {

constexpr auto cancelled = "Direction change cancelled after focus changed or another key was pressed";

class LiveOutlookTest : public LiveOffice {
protected:
    void startOutlook(const std::vector<std::string>& options = {}) { start(QUILLANE_OUTLOOK_STANDIN, options); }

    /// Waits until this many paragraphs have been changed, the last one as given.
    void expectTurned(std::size_t count, const std::string& field, const std::string& direction) {
        expectCount("direction", count);
        const auto turns = events("direction");
        ASSERT_FALSE(turns.empty());
        EXPECT_EQ(turns.back().at("field"), field);
        EXPECT_EQ(turns.back().at("value"), direction);
    }

    void turnThereAndBack(const std::string& field) {
        turnRight();
        expectTurned(1, field, "rtl");
        expectSaid("Applied RTL in Outlook");
        turnLeft();
        expectTurned(2, field, "ltr");
        expectSaid("Applied LTR in Outlook");
    }
};

TEST_F(LiveOutlookTest, AChordTurnsTheBodyAndTurnsItBack) {
    startOutlook();
    turnThereAndBack("body");
    expectCount("focus", 1);
    expectCount("menu", 0);
}

TEST_F(LiveOutlookTest, AChordTurnsTheSubjectByItsContextMenuAndTurnsItBack) {
    startOutlook({"--focus", "subject"});
    turnThereAndBack("subject");
    expectCount("menu", 2);
    expectCount("menu closed", 2);
}

TEST_F(LiveOutlookTest, ANarrowWindowIsServedThroughItsPopover) {
    startOutlook({"--toolbar", "narrow"});
    turnThereAndBack("body");
    expectCount("overflow", 2);
    expectCount("popover", 2);
}

TEST_F(LiveOutlookTest, APopoverThatTakesTheFocusIsServedToo) {
    startOutlook({"--toolbar", "narrow", "--popover", "focused"});
    turnRight();
    expectTurned(1, "body", "rtl");
    expectSaid("Applied RTL in Outlook");
}

struct Refusal {
    const char* name;
    std::vector<std::string> options;
    const char* said;
    std::size_t opened; ///< how often the overflow button was pressed
};

void PrintTo(const Refusal& row, std::ostream* out) {
    *out << row.name;
}

class LiveOutlookRefusalTest : public LiveOutlookTest, public testing::WithParamInterface<Refusal> {};

TEST_P(LiveOutlookRefusalTest, SaysWhyAndTurnsNothing) {
    startOutlook(GetParam().options);
    turnRight();
    expectSaid(GetParam().said);
    expectCount("overflow", GetParam().opened);
    expectCount("menu", 0);
    expectCount("direction", 0);
}

INSTANTIATE_TEST_SUITE_P(
    Where, LiveOutlookRefusalTest,
    testing::Values(
        Refusal{"PlainText", {"--toolbar", "none"}, "Formatting toolbar not found — the message must use HTML", 0},
        Refusal{"ReadingPane",
                {"--address", "https://outlook.example/read"},
                "Place the cursor in the Outlook message body or subject",
                0},
        Refusal{"DisabledButton", {"--disabled", "direction"}, "Outlook did not apply the direction command", 0},
        Refusal{"NoButtons", {"--toolbar", "bare"}, "Direction buttons were not found in this version of Outlook", 0},
        Refusal{"DisabledOverflow",
                {"--toolbar", "narrow", "--disabled", "overflow"},
                "Could not open additional formatting options",
                0},
        Refusal{"NoPopover",
                {"--toolbar", "narrow", "--popover", "never"},
                "Direction button not found in the menu — press Esc to close it",
                1},
        Refusal{"FixedSubject",
                {"--focus", "subject", "--fixed-subject"},
                "Place the cursor in the Outlook subject field",
                0}),
    [](const auto& one) { return std::string(one.param.name); });

/// The popover does not come while the agent waits for it.
class LiveOutlookWaitTest : public LiveOutlookTest {
protected:
    void beginWait() {
        startOutlook({"--toolbar", "narrow", "--popover", "never"});
        turnRight();
        expectCount("overflow", 1);
    }
};

TEST_F(LiveOutlookWaitTest, AKeyThatMovesTheCursorElsewhereCancelsIt) {
    beginWait();
    desktop().keyboard().tap(Key::tab);
    expectSaid(cancelled);
    expectCount("direction", 0);
}

TEST_F(LiveOutlookWaitTest, AKeyThatLeavesTheCursorWhereItIsCancelsItToo) {
    beginWait();
    desktop().keyboard().tap(Key::a);
    expectSaid(cancelled);
    expectCount("focus", 1);
    expectCount("direction", 0);
}

TEST_F(LiveOutlookWaitTest, AnotherApplicationCancelsIt) {
    startEditor(editors().front());
    beginWait();
    ASSERT_TRUE(agent().bringToFront(editor().pid()));
    expectSaid(cancelled);
    expectCount("direction", 0);
}

} // namespace
} // namespace quillane::live
