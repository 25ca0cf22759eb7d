// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/office/LiveOffice.hpp"

namespace quillane::live {
namespace {

class LiveWordTest : public LiveOffice {
protected:
    void startWord(const std::vector<std::string>& options = {}) { start(QUILLANE_WORD_STANDIN, options); }

    void expectParagraphs(const nlohmann::json& expected) {
        const auto last = [&] {
            const auto all = events("direction");
            return all.empty() ? nlohmann::json() : all.back().at("paragraphs");
        };
        EXPECT_TRUE(waitUntil([&] { return last() == expected; })) << last();
    }
};

TEST_F(LiveWordTest, AChordTurnsTheParagraphAndTurnsItBack) {
    startWord();
    turnRight();
    expectParagraphs({"ltr", "rtl"});
    expectSaid("Applied RTL in Word");
    turnLeft();
    expectParagraphs({"ltr", "ltr"});
    expectSaid("Applied LTR in Word");
    const auto turns = events("direction");
    ASSERT_EQ(turns.size(), 2U);
    EXPECT_EQ(turns[0].at("caret"), turns[1].at("caret"));
    expectCount("focus", 1);
    expectCount("tab", 0);
}

TEST_F(LiveWordTest, OpensTheHomeTabWhenAnotherIsShown) {
    startWord({"--shown", "Insert"});
    turnRight();
    expectParagraphs({"ltr", "rtl"});
    expectSaid("Applied RTL in Word");
    ASSERT_EQ(events("tab").size(), 1U);
    EXPECT_EQ(events("tab").back().at("name"), "Home");
    turnLeft();
    expectParagraphs({"ltr", "ltr"});
    expectCount("tab", 1);
    expectCount("focus", 1);
}

struct Refusal {
    const char* name;
    std::vector<std::string> options;
    const char* said;
    std::size_t tabs; ///< opened meanwhile
};

void PrintTo(const Refusal& row, std::ostream* out) {
    *out << row.name;
}

constexpr auto openHome = "Open the Home tab in Word to show paragraph direction buttons";
constexpr auto place = "Place the cursor in the Word document body";

class LiveWordRefusalTest : public LiveWordTest, public testing::WithParamInterface<Refusal> {};

TEST_P(LiveWordRefusalTest, SaysWhyAndTurnsNothing) {
    startWord(GetParam().options);
    turnRight();
    expectSaid(GetParam().said);
    expectCount("tab", GetParam().tabs);
    expectCount("direction", 0);
}

INSTANTIATE_TEST_SUITE_P(
    Where, LiveWordRefusalTest,
    testing::Values(Refusal{"DisabledButton", {"--disabled"}, "Word cannot change direction in this document", 0},
                    Refusal{"NoHomeTab", {"--tabs", "Insert,Layout", "--shown", "Insert"}, openHome, 0},
                    Refusal{"HomeTabWithoutButtons", {"--shown", "Insert", "--coming", "never"}, openHome, 1},
                    Refusal{"Comment", {"--focus", "comment"}, place, 0},
                    Refusal{"ReadOnlyDocument", {"--readonly"}, place, 0}),
    [](const auto& one) { return std::string(one.param.name); });

/// The buttons come as soon as the page has lost the focus, while the agent still waits for them.
class LiveWordWaitTest : public LiveWordTest {
protected:
    void beginWait() {
        startWord({"--shown", "Insert", "--coming", "left"});
        turnRight();
        expectCount("tab", 1);
    }

    void expectNothingDone() {
        expectCount("buttons", 1);
        EXPECT_TRUE(holdsFor(std::chrono::milliseconds{700}, [&] { return events("direction").empty(); }));
        expectSaidNothing();
    }
};

TEST_F(LiveWordWaitTest, AKeyThatMovesTheCursorElsewhereEndsItSilently) {
    beginWait();
    desktop().keyboard().tap(Key::tab);
    expectNothingDone();
}

TEST_F(LiveWordWaitTest, AnotherApplicationEndsItSilently) {
    startEditor(editors().front());
    beginWait();
    ASSERT_TRUE(agent().bringToFront(editor().pid()));
    expectNothingDone();
    ASSERT_TRUE(agent().bringToFront(pid()));
    turnRight();
    expectParagraphs({"ltr", "rtl"});
    expectSaid("Applied RTL in Word");
    expectCount("direction", 1);
}

} // namespace
} // namespace quillane::live
