// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/LiveForm.hpp"
#include "desktop/direction/editors/EditorTest.hpp"

#include <tuple>

namespace quillane::live {
namespace {

class LiveEditorsTest : public EditorTest, public testing::WithParamInterface<Target> {};

TEST_P(LiveEditorsTest, AChordTurnsTheParagraphAtTheCursorAndTurnsItBack) {
    startIn(GetParam());
    const auto path = GetParam().bodyMenu + "/Paragraph/";
    turnRight();
    expectSaid("Applied RTL in " + GetParam().name);
    expectState("directions", {"ltr", "rtl", "ltr"});
    expectState("menu", false);
    turnLeft();
    expectSaid("Applied LTR in " + GetParam().name);
    expectState("directions", {"ltr", "ltr", "ltr"});
    expectState("menu", false);
    expectState("chosen", {path + "Right to Left", path + "Left to Right"});
    expectState("selection", {13, 15});
    desktop().keyboard().tap(Key::q);
    expectState("text", "first line\nseqnd line");
}

TEST_P(LiveEditorsTest, ReadOnlyTextIsNotATarget) {
    startIn(GetParam(), {"--read-only"});
    turnRight();
    expectSaid(GetParam().hint);
    expectNoMenuAskedFor();
    expectUntouched();
}

TEST_P(LiveEditorsTest, AMenuThatIsOpenAlreadyIsLeftAlone) {
    startIn(GetParam());
    desktop().keyboard().tap(Key::menu);
    expectState("menu", true);
    turnRight();
    expectSaid("Close the open menu and try again");
    expectState("menu", true);
    expectState("asked", 1); // by the key
    desktop().keyboard().tap(Key::escape);
    expectUntouched();
    turnRight();
    expectSaid("Applied RTL in " + GetParam().name);
    expectState("directions", {"ltr", "rtl", "ltr"});
}

TEST_P(LiveEditorsTest, AnotherApplicationInFrontEndsTheWaitWithoutAWord) {
    startIn(GetParam(), {"--menu", "late"});
    const auto form = required(LiveForm::start(desktop(), "plain"));
    require(agent().bringToFront(document_->pid()), "the document in front");
    const auto before = agent().status().at("lastAction");
    turnRight();
    expectState("asked", 1);
    require(agent().bringToFront(form.pid()), "the form in front");
    expectState("menu", true); // nobody waits for it any more
    EXPECT_TRUE(holdsFor(500ms, [&] { return state().at("chosen").empty(); })) << state();
    EXPECT_EQ(agent().status().at("lastAction"), before);
    desktop().keyboard().tap(Key::escape);
    expectUntouched();
    require(agent().bringToFront(document_->pid()), "the document in front");
    turnRight();
    expectSaid("Applied RTL in " + GetParam().name);
    expectState("directions", {"ltr", "rtl", "ltr"});
}

INSTANTIATE_TEST_SUITE_P(In, LiveEditorsTest, testing::ValuesIn(targets),
                         [](const auto& one) { return one.param.name; });

class LiveEditorMenusTest : public EditorTest, public testing::WithParamInterface<std::tuple<Target, MenuCase>> {};

TEST_P(LiveEditorMenusTest, DecideTheOutcomeOfTheChord) {
    const auto& [target, menu] = GetParam();
    startIn(target, {"--menu", menu.mode});
    turnRight();
    expectSaid(menu.isApplied ? menu.said + target.name : menu.said);
    expectState("asked", 1);
    if (menu.isApplied) {
        expectState("directions", {"ltr", "rtl", "ltr"});
        expectState("chosen", json::array({target.bodyMenu + "/Paragraph/Right to Left"}));
        expectState("selection", {13, 15});
        expectState("menu", false);
    } else {
        expectUntouched();
    }
}

const std::vector<MenuCase> menuCases{
    {"IsLate", "late", "Applied RTL in ", true},
    {"KeepsTheApplicationBusy", "busy", "Applied RTL in ", true},
    {"MovesTheSelection", "selects", "Applied RTL in ", true},
    {"KeepsTheSelectionMoved", "stubborn", "Could not preserve the text selection — direction change cancelled"},
    {"MovesTheFocus", "focus", "Direction change cancelled: focus moved to another field"},
    {"HasASectionForTheSelectionOnly", "selection", "This editor does not offer a paragraph direction command"},
    {"NeverOpens", "never", "The direction menu is unavailable in this editor"},
    {"HasItsCommandsDisabled", "disabled", "The app did not apply the direction command"}};

INSTANTIATE_TEST_SUITE_P(In, LiveEditorMenusTest,
                         testing::Combine(testing::ValuesIn(targets), testing::ValuesIn(menuCases)),
                         [](const auto& one) { return std::get<0>(one.param).name + std::get<1>(one.param).name; });

TEST_P(LiveEditorsTest, AFieldWithoutAnActionForItsMenuIsReportedAtOnce) {
    startIn(GetParam(), {"--menu", "hidden"});
    turnRight();
    expectSaid(GetParam().name + " cannot open the direction menu for this field");
    expectNoMenuAskedFor();
    expectUntouched();
}

TEST_P(LiveEditorsTest, AFieldThatHidesItsCursorIsNotTouched) {
    startIn(GetParam(), {"--menu", "cursorless"});
    turnRight();
    expectSaid("The editor does not expose the cursor position — direction was not changed");
    expectNoMenuAskedFor();
    expectUntouched();
}

TEST_P(LiveEditorsTest, ASecondChordWhileTheMenuIsAwaitedIsIgnored) {
    startIn(GetParam(), {"--menu", "late"});
    turnRight();
    expectState("asked", 1);
    turnLeft();
    expectSaid("Applied RTL in " + GetParam().name);
    expectState("chosen", json::array({GetParam().bodyMenu + "/Paragraph/Right to Left"}));
    EXPECT_TRUE(holdsFor(500ms, [&] { return state().at("asked") == 1; })) << state();
    expectState("directions", {"ltr", "rtl", "ltr"});
}

class LiveOtherFieldTest : public EditorTest, public testing::WithParamInterface<Target> {};

TEST_P(LiveOtherFieldTest, IsNotATarget) {
    startIn(GetParam(), {"--focus", "other"});
    turnRight();
    expectSaid(GetParam().hint);
    expectNoMenuAskedFor();
    expectUntouched();
}

INSTANTIATE_TEST_SUITE_P(In, LiveOtherFieldTest, testing::Values(safari, textEdit, notes),
                         [](const auto& one) { return one.param.name; });

using LiveMailTest = EditorTest;

TEST_F(LiveMailTest, TheSubjectHasAMenuOfItsOwn) {
    startIn(mail, {"--focus", "other"});
    turnRight();
    expectSaid("Applied RTL in Mail");
    expectState("directions", {"ltr", "ltr", "rtl"});
    turnLeft();
    expectSaid("Applied LTR in Mail");
    expectState("directions", {"ltr", "ltr", "ltr"});
    expectState("chosen", {"Writing Direction/Paragraph/Right to Left", "Writing Direction/Paragraph/Left to Right"});
    expectState("menu", false);
}

TEST_F(LiveMailTest, AWindowWithoutASubjectIsForReading) {
    startIn(mail, {"--reads"});
    turnRight();
    expectSaid(mail.hint);
    expectNoMenuAskedFor();
    expectUntouched();
}

using LiveSafariTest = EditorTest;

TEST_F(LiveSafariTest, AMenuThatIsSlowToCloseGetsNoEscapeTooMany) {
    startIn(safari, {"--menu", "selection", "--slow-to-close"});
    turnRight();
    expectSaid("This editor does not offer a paragraph direction command");
    expectState("menu", false);
    EXPECT_TRUE(holdsFor(500ms, [&] { return state().at("escapes") == 0; })) << state();
    expectUntouched();
}

TEST_F(LiveSafariTest, AMenuThatDoesNotOpenLeavesADiagnosticText) {
    startIn(safari, {"--menu", "never"});
    turnRight();
    expectSaid("The direction menu is unavailable in this editor");
    const auto settings = desktop().home() / ".config/quillane/defaults.plist";
    EXPECT_TRUE(waitUntil([&] {
        return readFile(settings).find("Editor actions: AXShowMenu\nFocus role: AXTextArea") != std::string::npos;
    })) << readFile(settings);
}

} // namespace
} // namespace quillane::live
