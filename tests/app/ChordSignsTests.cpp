// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/CaretPlace.hpp"
#include "app/ChordSigns.hpp"
#include "core/localization/Texts.hpp"
#include "fakes/FakeDesktop.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <utility>
#include <vector>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using core::AppLanguage;
using core::WritingDirection;
namespace texts = core::texts;

/// What a view was asked to show, and what it shows now.
struct Shown {
    std::vector<std::pair<core::ChordSign, std::optional<AXRect>>> signs;
    std::optional<AppLanguage> language; ///< of the sign that is shown now
    int views = 0;
};

class RecordingView final : public ChordSignView {
public:
    explicit RecordingView(Shown& shown) : shown_(shown) { ++shown_.views; }

    ~RecordingView() override { --shown_.views; }

    void present(const core::ChordSign& sign, AppLanguage language, const std::optional<AXRect>& caret) override {
        shown_.signs.emplace_back(sign, caret);
        shown_.language = language;
    }

    void dismiss() override { shown_.language.reset(); }

private:
    Shown& shown_;
};

class ChordSignsTest : public ::testing::Test {
protected:
    /// An application with a text cursor there.
    void openEditor(const AXRect& caret) {
        desktop.withFrontApplication("org.example.editor").withFocusedTextField("AXTextArea");
        editor = &desktop.accessibility.tree(desktop.frontPid()).addTextField("AXTextArea");
        editor->at({100, 100, 400, 300}).with("AXSelectedTextRange", AXTextRange{7, 0});
        editor->withText([caret](const AXTextRange& range) {
            return range == AXTextRange{7, 0} ? std::optional(caret) : std::nullopt;
        });
        desktop.accessibility.focus(desktop.frontPid(), editor);
    }

    [[nodiscard]] std::optional<AXRect> place() { return caretPlace(desktop.accessibility, desktop.frontPid()); }

    void letTextTurn() { desktop.settle().queue.advance(60ms); }

    fakes::FakeDesktop desktop;
    core::AppPreferences preferences{desktop.userDefaults};
    Shown shown;
    ChordSigns signs{desktop.platform, preferences, [this] { return std::make_unique<RecordingView>(shown); }};
    fakes::FakeElement* editor = nullptr;
    const core::ChordOutcome applied{texts::appliedDirection("RTL", "Chrome"), WritingDirection::rightToLeft};
    const core::ChordOutcome failed{texts::closeOpenMenu};
};

TEST_F(ChordSignsTest, ADirectionIsShownAtTheCursorForSixTenthsOfASecond) {
    openEditor({220, 180, 1, 16});
    signs.show(applied);
    letTextTurn();
    ASSERT_EQ(shown.signs.size(), 1U);
    EXPECT_EQ(shown.signs.front().first, core::chordSign(applied));
    EXPECT_EQ(shown.signs.front().second, (AXRect{220, 180, 1, 16}));
    desktop.queue.advance(599ms);
    EXPECT_TRUE(shown.language);
    desktop.queue.advance(1ms);
    EXPECT_FALSE(shown.language);
}

TEST_F(ChordSignsTest, NobodyIsAskedWhileTheChordIsBeingCarriedOut) {
    openEditor({220, 180, 1, 16});
    desktop.accessibility.forgetCalls();
    signs.show(applied);
    EXPECT_TRUE(desktop.accessibility.calls().empty());
    EXPECT_TRUE(shown.signs.empty());
    letTextTurn();
    ASSERT_FALSE(desktop.accessibility.calls().empty());
    for (const auto& call : desktop.accessibility.calls()) {
        EXPECT_EQ(call.timeout, 150ms) << call.what;
    }
}

TEST_F(ChordSignsTest, AnApplicationThatHangsIsGivenUp) {
    openEditor({220, 180, 1, 16});
    desktop.accessibility.stopAnswering(desktop.frontPid());
    desktop.accessibility.forgetCalls();
    signs.show(failed);
    desktop.settle();
    EXPECT_LE(desktop.accessibility.calls().size(), 1U);
    ASSERT_EQ(shown.signs.size(), 1U);
    EXPECT_EQ(shown.signs.front().second, std::nullopt);
}

TEST_F(ChordSignsTest, AFailureIsShownAsLongAsItTakesToReadInTheLanguageOfTheInterface) {
    preferences.choose(AppLanguage::hebrew);
    signs.show(failed);
    desktop.settle();
    EXPECT_EQ(shown.language, AppLanguage::hebrew);
    const auto time = core::timeShown(core::chordSign(failed), AppLanguage::hebrew);
    EXPECT_GT(time, 1s);
    desktop.queue.advance(time - 1ms);
    EXPECT_TRUE(shown.language);
    desktop.queue.advance(1ms);
    EXPECT_FALSE(shown.language);
}

TEST_F(ChordSignsTest, ALaterSignHasItsOwnTime) {
    signs.show(applied);
    letTextTurn();
    desktop.queue.advance(400ms);
    signs.show(applied);
    letTextTurn();
    desktop.queue.advance(500ms); // the time of the first is over
    EXPECT_TRUE(shown.language);
    desktop.queue.advance(100ms);
    EXPECT_FALSE(shown.language);
    EXPECT_EQ(shown.views, 1);
}

TEST_F(ChordSignsTest, OfTwoAtOnceOnlyTheLastIsShown) {
    signs.show(failed);
    signs.show(applied);
    letTextTurn();
    ASSERT_EQ(shown.signs.size(), 1U);
    EXPECT_EQ(shown.signs.front().first, core::chordSign(applied));
}

TEST_F(ChordSignsTest, SwitchedOffNothingIsShownAndNobodyAsked) {
    openEditor({220, 180, 1, 16});
    desktop.userDefaults.setObject(core::chordSignKey, core::PropertyListValue(false));
    desktop.accessibility.forgetCalls();
    signs.show(applied);
    letTextTurn();
    EXPECT_EQ(shown.views, 0);
    EXPECT_TRUE(desktop.accessibility.calls().empty());
    desktop.userDefaults.setObject(core::chordSignKey, core::PropertyListValue(true));
    signs.show(applied);
    letTextTurn();
    EXPECT_EQ(shown.signs.size(), 1U);
}

TEST_F(ChordSignsTest, DismissedItGoesAndOneOnItsWayIsNotShown) {
    signs.show(failed);
    desktop.settle();
    signs.show(applied);
    signs.dismiss();
    letTextTurn();
    EXPECT_FALSE(shown.language);
    EXPECT_EQ(shown.signs.size(), 1U);
}

TEST_F(ChordSignsTest, AfterTheEndThereIsNoView) {
    signs.show(failed);
    desktop.settle();
    signs.end();
    EXPECT_EQ(shown.views, 0);
    signs.show(applied);
    letTextTurn();
    EXPECT_EQ(shown.views, 0);
}

TEST_F(ChordSignsTest, BehindTheLastCharacterItsOwnPlaceCounts) {
    openEditor({});
    editor->withText([](const AXTextRange& range) {
        return range == AXTextRange{6, 1} ? std::optional(AXRect{300, 200, 8, 16}) : AXRect{};
    });
    EXPECT_EQ(place(), (AXRect{300, 200, 8, 16}));
}

TEST_F(ChordSignsTest, ThePlaceOfASelectionIsItsEnd) {
    openEditor({220, 180, 1, 16});
    editor->with("AXSelectedTextRange", AXTextRange{2, 5});
    EXPECT_EQ(place(), (AXRect{220, 180, 1, 16}));
}

TEST_F(ChordSignsTest, TheFirstLineOfAnEmptyFieldIsItsPlace) {
    openEditor({});
    editor->with("AXSelectedTextRange", AXTextRange{0, 0});
    EXPECT_EQ(place(), (AXRect{100, 100, 400, 24}));
}

TEST_F(ChordSignsTest, ACursorThatIsScrolledAwayHasNoPlace) {
    openEditor({220, 900, 1, 16});
    EXPECT_EQ(place(), std::nullopt);
}

} // namespace
} // namespace quillane
