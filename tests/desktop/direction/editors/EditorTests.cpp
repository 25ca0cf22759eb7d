// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "desktop/agent/AgentTest.hpp"
#include "desktop/agent/LiveForm.hpp"
#include "desktop/direction/editors/LiveDocument.hpp"

#include <ostream>
#include <tuple>

namespace quillane::live {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;

/// An application, and what the agent calls it and says of it.
struct Target {
    std::string name;
    std::string bundleID;
    std::string bodyMenu;
    std::string hint;
};

const Target safari{"Safari", "com.apple.Safari", "Paragraph Direction",
                    "Place the cursor in an editable text field on the website"};
const Target textEdit{"TextEdit", "com.apple.TextEdit", "Writing Direction",
                      "Place the cursor in the TextEdit document body"};
const Target notes{"Notes", "com.apple.Notes", "Writing Direction", "Place the cursor in the Notes note body"};
const Target mail{"Mail", "com.apple.mail", "Paragraph Direction",
                  "Place the cursor in the Mail message body or subject"};
const std::vector<Target> targets{safari, textEdit, notes, mail};

void PrintTo(const Target& target, std::ostream* out) {
    *out << target.name;
}

/// Direction chords in each application, with the interface of the agent in English.
class EditorTest : public AgentTest {
protected:
    void startIn(const Target& target, const std::vector<std::string>& options = {}) {
        require(chooseAgentLanguage(desktop(), "en"), "the language in the settings");
        startAgent();
        document_.emplace(required(LiveDocument::start(desktop(), target.bundleID, options)));
        require(agent().waitForStatus([](const auto& status) { return status.at("monitorRunning") == true; }),
                "the agent observes the keyboard");
    }

    void TearDown() override {
        AgentTest::TearDown();
        document_.reset();
    }

    [[nodiscard]] json state() const { return document_->state(); }

    void expectSaid(const std::string& text) {
        EXPECT_TRUE(agent().waitForStatus([&](const auto& status) { return status.at("lastAction") == text; }))
            << agent().status();
    }

    /// Waits until the document is like that.
    void expectState(const std::string& key, const json& value) {
        EXPECT_TRUE(waitUntil([&] { return state().at(key) == value; })) << key << ": " << state();
    }

    void expectUntouched() {
        expectState("menu", false);
        expectState("text", "first line\nsecond line");
        expectState("directions", {"ltr", "ltr", "ltr"});
        expectState("chosen", json::array());
    }

    void expectNoMenuAskedFor() {
        EXPECT_TRUE(holdsFor(500ms, [&] { return state().at("asked") == 0; })) << state();
    }

    void turnRight() { desktop().keyboard().chord({Key::leftControl, Key::rightShift}); }

    void turnLeft() { desktop().keyboard().chord({Key::leftControl, Key::leftShift}); }

    std::optional<LiveDocument> document_;
};

class LiveEditors : public EditorTest, public testing::WithParamInterface<Target> {};

TEST_P(LiveEditors, AChordTurnsTheParagraphAtTheCursorAndTurnsItBack) {
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

TEST_P(LiveEditors, TextThatCannotBeEditedIsNoPlace) {
    startIn(GetParam(), {"--read-only"});
    turnRight();
    expectSaid(GetParam().hint);
    expectNoMenuAskedFor();
    expectUntouched();
}

TEST_P(LiveEditors, AMenuThatIsOpenAlreadyIsLeftAlone) {
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

TEST_P(LiveEditors, AnotherApplicationInFrontEndsTheWaitWithoutAWord) {
    startIn(GetParam(), {"--menu", "late"});
    const auto form = required(LiveForm::start(desktop(), "plain"));
    require(desktop().bringToFront(document_->pid()), "the document in front");
    const auto before = agent().status().at("lastAction");
    turnRight();
    expectState("asked", 1);
    require(desktop().bringToFront(form.pid()), "the form in front");
    expectState("menu", true); // nobody waits for it any more
    EXPECT_TRUE(holdsFor(500ms, [&] { return state().at("chosen").empty(); })) << state();
    EXPECT_EQ(agent().status().at("lastAction"), before);
    desktop().keyboard().tap(Key::escape);
    expectUntouched();
    require(desktop().bringToFront(document_->pid()), "the document in front");
    turnRight();
    expectSaid("Applied RTL in " + GetParam().name);
    expectState("directions", {"ltr", "rtl", "ltr"});
}

INSTANTIATE_TEST_SUITE_P(In, LiveEditors, testing::ValuesIn(targets), [](const auto& one) { return one.param.name; });

/// What a menu does when it is asked for, and what becomes of the chord.
struct MenuCase {
    std::string name;
    std::string mode;
    std::string said;
    bool isApplied = false;
};

void PrintTo(const MenuCase& menu, std::ostream* out) {
    *out << menu.name;
}

class LiveEditorMenus : public EditorTest, public testing::WithParamInterface<std::tuple<Target, MenuCase>> {};

TEST_P(LiveEditorMenus, DecideWhatBecomesOfTheChord) {
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
    {"MovesTheSelection", "selects", "Applied RTL in ", true},
    {"KeepsTheSelectionMoved", "stubborn", "Could not preserve the text selection — direction change cancelled"},
    {"MovesTheFocus", "focus", "Direction change cancelled: focus moved to another field"},
    {"HasASectionForTheSelectionOnly", "selection", "This editor does not offer a paragraph direction command"},
    {"NeverOpens", "never", "The direction menu is unavailable in this editor"},
    {"HasItsCommandsDisabled", "disabled", "The app did not apply the direction command"}};

INSTANTIATE_TEST_SUITE_P(In, LiveEditorMenus,
                         testing::Combine(testing::ValuesIn(targets), testing::ValuesIn(menuCases)),
                         [](const auto& one) { return std::get<0>(one.param).name + std::get<1>(one.param).name; });

TEST_P(LiveEditors, AFieldWithoutAnActionForItsMenuIsToldAtOnce) {
    startIn(GetParam(), {"--menu", "hidden"});
    turnRight();
    expectSaid(GetParam().name + " cannot open the direction menu for this field");
    expectNoMenuAskedFor();
    expectUntouched();
}

TEST_P(LiveEditors, AFieldThatHidesItsCursorIsNotTouched) {
    startIn(GetParam(), {"--menu", "cursorless"});
    turnRight();
    expectSaid("The editor does not expose the cursor position — direction was not changed");
    expectNoMenuAskedFor();
    expectUntouched();
}

TEST_P(LiveEditors, ASecondChordWhileTheMenuIsAwaitedIsIgnored) {
    startIn(GetParam(), {"--menu", "late"});
    turnRight();
    expectState("asked", 1);
    turnLeft();
    expectSaid("Applied RTL in " + GetParam().name);
    expectState("chosen", json::array({GetParam().bodyMenu + "/Paragraph/Right to Left"}));
    EXPECT_TRUE(holdsFor(500ms, [&] { return state().at("asked") == 1; })) << state();
    expectState("directions", {"ltr", "rtl", "ltr"});
}

class LiveOtherField : public EditorTest, public testing::WithParamInterface<Target> {};

TEST_P(LiveOtherField, IsNoPlace) {
    startIn(GetParam(), {"--focus", "other"});
    turnRight();
    expectSaid(GetParam().hint);
    expectNoMenuAskedFor();
    expectUntouched();
}

INSTANTIATE_TEST_SUITE_P(In, LiveOtherField, testing::Values(safari, textEdit, notes),
                         [](const auto& one) { return one.param.name; });

using LiveMail = EditorTest;

TEST_F(LiveMail, TheSubjectHasAMenuOfItsOwn) {
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

TEST_F(LiveMail, AWindowWithoutASubjectIsForReading) {
    startIn(mail, {"--reads"});
    turnRight();
    expectSaid(mail.hint);
    expectNoMenuAskedFor();
    expectUntouched();
}

using LiveSafari = EditorTest;

TEST_F(LiveSafari, AMenuThatDoesNotOpenLeavesADiagnosticText) {
    startIn(safari, {"--menu", "never"});
    turnRight();
    expectSaid("The direction menu is unavailable in this editor");
    const auto settings = desktop().home() / ".config/quillane/defaults.plist";
    EXPECT_TRUE(waitUntil([&] {
        return readFile(settings).find("Editor actions: AXShowMenu\nFocus role: AXTextArea") != std::string::npos;
    })) << readFile(settings);
}

/// The application ends in the middle of an attempt.
class LiveEnd : public EditorTest {
protected:
    void expectNextAttemptWorks() {
        document_.emplace(required(LiveDocument::start(desktop(), safari.bundleID)));
        turnRight();
        expectSaid("Applied RTL in Safari");
        expectState("directions", {"ltr", "rtl", "ltr"});
    }
};

TEST_F(LiveEnd, WhenAskedForTheMenuIsAMenuThatCannotBeOpened) {
    startIn(safari, {"--menu", "exits"});
    turnRight();
    expectSaid("Safari cannot open the direction menu for this field");
    expectNextAttemptWorks();
}

TEST_F(LiveEnd, WhileItsMenuIsOpenEndsTheAttemptWithoutAWord) {
    startIn(safari, {"--menu", "vanishes"});
    turnRight();
    expectState("menu", true);
    EXPECT_TRUE(holdsFor(2s, [&] { return agent().status().value("lastAction", "(no status)").empty(); }))
        << agent().status();
    expectNextAttemptWorks();
}

/// What an application answers wrongly, and what becomes of the chord.
class LiveWrongAnswers : public EditorTest, public testing::WithParamInterface<MenuCase> {};

TEST_P(LiveWrongAnswers, AreAbsence) {
    startIn(safari, {"--answers", GetParam().mode});
    const auto begin = std::chrono::steady_clock::now();
    turnRight();
    expectSaid(GetParam().said);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
    if (GetParam().isApplied) {
        expectState("directions", {"ltr", "rtl", "ltr"});
        expectState("menu", false);
    } else {
        expectUntouched();
    }
}

constexpr auto noCommand = "This editor does not offer a paragraph direction command";

INSTANTIATE_TEST_SUITE_P(
    About, LiveWrongAnswers,
    testing::Values(MenuCase{"TheField", "field", safari.hint},
                    MenuCase{"TheCursor", "cursor",
                             "The editor does not expose the cursor position — direction was not changed"},
                    MenuCase{"TheEndOfTheText", "ranges", "Applied RTL in Safari", true},
                    MenuCase{"TheFocusInTheMenu", "focus", "Cursor position unavailable — direction change cancelled"},
                    MenuCase{"TheItemsOfTheMenu", "items", noCommand}, MenuCase{"TheirTitles", "titles", noCommand}),
    [](const auto& one) { return one.param.name; });

} // namespace
} // namespace quillane::live
