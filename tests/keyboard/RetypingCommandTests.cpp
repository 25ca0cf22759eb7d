// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/RetypingCommand.hpp"

#include "core/localization/Texts.hpp"
#include "fakes/FakeDesktop.hpp"
#include "support/KeyboardLayouts.hpp"

#include <gmock/gmock.h>

namespace quillane {
namespace {

using namespace fakes;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace texts = core::texts;

class RetypingCommandTest : public ::testing::Test {
protected:
    RetypingCommandTest() {
        desktop.withInputSources({english(), hebrew(), arabic()});
        desktop.inputSources.setLayout(english().id, testing::englishLayout());
        desktop.inputSources.setLayout(hebrew().id, testing::hebrewLayout());
        desktop.inputSources.setLayout(arabic().id, testing::arabicLayout());
        retyper.start();
        command.report = [this](const core::LocalizedText& text) {
            said.push_back(text.rendered(core::AppLanguage::english));
        };
        focus(field);
    }

    void focus(FakeElement& element) { desktop.accessibility.focus(desktop.frontPid(), &element); }

    void select(std::int64_t location, std::int64_t length) {
        field.with("AXSelectedTextRange", AXTextRange{location, length});
    }

    [[nodiscard]] AXTextRange selection() {
        const auto value =
            desktop.accessibility.attribute(desktop.accessibility.reference(field), "AXSelectedTextRange");
        return std::get<AXTextRange>(value.value());
    }

    void press(std::size_t strokes, core::retyping::CapsLock capsLock = core::retyping::CapsLock::off) {
        command.retype({strokes, capsLock});
        desktop.settle();
    }

    [[nodiscard]] std::string source() { return desktop.inputSources.current().value().id; }

    FakeDesktop desktop;
    FakeElement& field = [this]() -> FakeElement& {
        desktop.withFrontApplication("com.apple.TextEdit");
        return desktop.accessibility.tree(desktop.frontPid()).addTextField("AXTextArea");
    }();
    Retyper retyper{desktop.inputSources};
    RetypingCommand command{desktop.platform, retyper,
                            [this] { return core::TypedStrokes::Time(desktop.queue.now()); }};
    std::vector<std::string> said;
};

TEST_F(RetypingCommandTest, LastWordIsRetypedAndItsSourceSelected) {
    field.saying(U"hello akuo");
    press(4);
    EXPECT_EQ(field.text(), U"hello שלום");
    EXPECT_EQ(selection(), (AXTextRange{10, 0}));
    EXPECT_EQ(source(), hebrew().id);
    EXPECT_THAT(said, ElementsAre("Keyboard language: Hebrew"));
}

TEST_F(RetypingCommandTest, ArabicOfOneKeyIsTakenWhole) {
    ASSERT_TRUE(desktop.inputSources.select(arabic().id));
    field.saying(U"سلام");
    press(3);
    EXPECT_EQ(field.text(), U"sbl");
    EXPECT_EQ(selection(), (AXTextRange{3, 0}));
    EXPECT_EQ(source(), english().id);
}

TEST_F(RetypingCommandTest, FurtherPressesTakeOneWordMoreEach) {
    field.saying(U"me vhuo akuo guko ");
    press(15);
    EXPECT_EQ(field.text(), U"me vhuo akuo עולם ");
    desktop.queue.advance(2s);
    press(15);
    EXPECT_EQ(field.text(), U"me vhuo שלום עולם ");
    desktop.queue.advance(2s);
    press(15);
    EXPECT_EQ(field.text(), U"me היום שלום עולם ");
    press(15);
    press(15);
    EXPECT_EQ(field.text(), U"me היום שלום עולם ") << "no more was typed";
    EXPECT_EQ(selection(), (AXTextRange{18, 0}));
}

TEST_F(RetypingCommandTest, PressAfterTwoSecondsTakesTheWordBack) {
    field.saying(U"vhuo akuo");
    press(9);
    desktop.queue.advance(2s + 1ms);
    press(9);
    EXPECT_EQ(field.text(), U"vhuo akuo");
    EXPECT_EQ(source(), english().id);
}

TEST_F(RetypingCommandTest, TypingBetweenPressesBeginsAgain) {
    field.saying(U"vhuo akuo");
    press(9);
    field.saying(U"vhuo שלוםש");
    press(10);
    EXPECT_EQ(field.text(), U"vhuo akuoa");
}

TEST_F(RetypingCommandTest, MovedCursorBeginsAgain) {
    field.saying(U"vhuo akuo");
    press(9);
    select(4, 0);
    press(9);
    EXPECT_EQ(field.text(), U"היום שלום");
    EXPECT_EQ(selection(), (AXTextRange{4, 0}));
}

TEST_F(RetypingCommandTest, WordOfDigitsIsPassedOver) {
    field.saying(U"akuo 2024");
    press(9);
    EXPECT_EQ(field.text(), U"akuo 2024");
    press(9);
    EXPECT_EQ(field.text(), U"שלום 2024");
}

TEST_F(RetypingCommandTest, OnlyWhatWasTypedIsTaken) {
    field.saying(U"helloakuo");
    press(4);
    EXPECT_EQ(field.text(), U"helloשלום");
}

TEST_F(RetypingCommandTest, NothingTypedIsNothingDone) {
    field.saying(U"akuo");
    press(0);
    EXPECT_EQ(field.text(), U"akuo");
    EXPECT_EQ(source(), english().id);
    EXPECT_THAT(said, IsEmpty());
}

TEST_F(RetypingCommandTest, SelectionIsRetypedAndStaysSelected) {
    field.saying(U"hello sbl there");
    ASSERT_TRUE(desktop.inputSources.select(arabic().id));
    ASSERT_TRUE(desktop.inputSources.select(english().id));
    select(6, 3);
    press(0);
    EXPECT_EQ(field.text(), U"hello سلام there");
    EXPECT_EQ(selection(), (AXTextRange{6, 4}));
    EXPECT_EQ(source(), arabic().id);
}

TEST_F(RetypingCommandTest, CapsLockIsTakenBack) {
    field.saying(U"AKUO");
    press(4, core::retyping::CapsLock::on);
    EXPECT_EQ(field.text(), U"שלום");
}

TEST_F(RetypingCommandTest, EmojiAndPointsKeepTheirPlaces) {
    field.saying(U"😀 a\u05c1k😀uo");
    press(7);
    EXPECT_EQ(field.text(), U"😀 ש\u05c1ל😀ום");
}

TEST_F(RetypingCommandTest, TextThatChangesMeanwhileIsLeft) {
    field.saying(U"akuo").beforeReplacement([this] {
        field.saying(U"xakuo");
        return true;
    });
    press(4);
    EXPECT_EQ(field.text(), U"xakuo");
    EXPECT_EQ(source(), english().id);
    EXPECT_THAT(said,
                ElementsAre(core::LocalizedText(texts::textIsNotWhatWasRead).rendered(core::AppLanguage::english)));
}

TEST_F(RetypingCommandTest, RefusedChangeIsSaid) {
    field.saying(U"akuo").beforeReplacement([] { return false; });
    press(4);
    EXPECT_EQ(field.text(), U"akuo");
    EXPECT_EQ(source(), english().id);
    EXPECT_THAT(said,
                ElementsAre(core::LocalizedText(texts::textCannotBeWritten).rendered(core::AppLanguage::english)));
}

TEST_F(RetypingCommandTest, ChangeThatDoesNotHappenIsSaidAndTheSourceComesBack) {
    field.saying(U"akuo").ignoringReplacements();
    press(4);
    EXPECT_EQ(source(), hebrew().id);
    desktop.queue.advance(1s);
    EXPECT_EQ(source(), english().id);
    EXPECT_THAT(said, ElementsAre(core::LocalizedText(texts::textNotFixed).rendered(core::AppLanguage::english)));
}

TEST_F(RetypingCommandTest, LateChangeIsFinishedUnlessTheUserTypes) {
    field.saying(U"akuo!").ignoringReplacements();
    select(4, 0);
    press(4);
    field.saying(U"שלום!");
    select(0, 0);
    desktop.queue.advance(100ms);
    EXPECT_EQ(selection(), (AXTextRange{4, 0}));
    EXPECT_THAT(said, ElementsAre("Keyboard language: Hebrew"));
}

TEST_F(RetypingCommandTest, CursorOfAUserWhoTypesIsLeftAlone) {
    field.saying(U"akuo!").ignoringReplacements();
    select(4, 0);
    press(4);
    command.interrupt();
    field.saying(U"שלום!");
    select(0, 0);
    desktop.queue.advance(1s);
    EXPECT_EQ(selection(), (AXTextRange{0, 0}));
    EXPECT_EQ(source(), hebrew().id);
}

TEST_F(RetypingCommandTest, PasswordFieldsAndTerminalsAreLeftAlone) {
    field.saying(U"akuo");
    desktop.secureInput.setEnabled(true);
    press(4);
    desktop.secureInput.setEnabled(false);
    desktop.keyEvents.terminals = {desktop.frontPid()};
    press(4);
    desktop.keyEvents.terminals.clear();
    field.with("AXSubrole", std::string("AXSecureTextField"));
    press(4);
    EXPECT_EQ(field.text(), U"akuo");
    EXPECT_THAT(said, IsEmpty());
    field.without("AXSubrole");
    press(4);
    EXPECT_EQ(field.text(), U"שלום");
}

TEST_F(RetypingCommandTest, TerminalsOfMacOSAreLeftAlone) {
    desktop.withFrontApplication("com.apple.Terminal");
    auto& screen = desktop.accessibility.tree(desktop.frontPid()).addTextField("AXTextArea").saying(U"akuo");
    focus(screen);
    press(4);
    EXPECT_EQ(screen.text(), U"akuo");
}

TEST_F(RetypingCommandTest, EditorThatCannotBeReadIsSaid) {
    press(4);
    EXPECT_THAT(said,
                ElementsAre(core::LocalizedText(texts::textCannotBeWritten).rendered(core::AppLanguage::english)));
}

TEST_F(RetypingCommandTest, OneSourceIsNoneToRetypeIn) {
    desktop.inputSources.setEnabled({english()});
    field.saying(U"akuo");
    press(4);
    EXPECT_EQ(field.text(), U"akuo");
}

} // namespace
} // namespace quillane
