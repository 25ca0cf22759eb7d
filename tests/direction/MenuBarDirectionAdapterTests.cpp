// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/DirectionTest.hpp"
#include "direction/MenuBarDirectionAdapter.hpp"

namespace quillane::testing {
namespace {

/// An editor that is not a supported application. Each faked application has the commands in its menu bar, by title.
class MenuBarDirectionTest : public DirectionTest {
protected:
    void openEditor() {
        openApplication("org.example.editor");
        field = &window->addTextField("AXTextArea");
        focus(*field);
    }

    void lookUp() {
        adapter.lookUpFront();
        desktop.queue.advance(100ms);
    }

    [[nodiscard]] bool serves() { return adapter.serves(*desktop.workspace.frontmostApplication()); }

    /// The presses of items, by what tells them apart.
    [[nodiscard]] std::vector<std::string> pressed(const std::string& attribute) {
        std::vector<std::string> names;
        for (const auto& action : desktop.accessibility.actions()) {
            EXPECT_EQ(action.name, "AXPress");
            auto& element = const_cast<FakeElement&>(*action.element);
            const auto name = desktop.accessibility.attribute(desktop.accessibility.reference(element), attribute);
            names.push_back(name ? std::get<std::string>(*name) : "none");
        }
        return names;
    }

    /// A menu bar as AppKit makes it in another language, with the identifiers of its items.
    void useIdentifiers() {
        bar = &tree().add("AXMenuBar");
        tree().with("AXMenuBar", *bar);
        auto& directions = bar->add("AXMenuBarItem").add("AXMenu").add("AXMenuItem").add("AXMenu");
        for (const auto* kind : {"Base", "Text"}) {
            for (const auto* direction : {"Natural", "LeftToRight", "RightToLeft"}) {
                directions.add("AXMenuItem")
                    .with("AXTitle", std::string("כיוון"))
                    .with("AXIdentifier", std::string("make") + kind + "WritingDirection" + direction + ":")
                    .withAction("AXPress");
            }
        }
    }

    MenuBarDirectionAdapter adapter{services(), report()};
    FakeElement* field = nullptr;
    FakeElement* bar = nullptr;
};

TEST_F(MenuBarDirectionTest, PressesTheCommandThatItHasLookedUp) {
    openEditor();
    adapter.apply(WritingDirection::rightToLeft);
    EXPECT_FALSE(serves());
    EXPECT_THAT(said, IsEmpty());
    lookUp();
    EXPECT_TRUE(serves());
    adapter.apply(WritingDirection::rightToLeft);
    adapter.apply(WritingDirection::leftToRight);
    const auto name = desktop.workspace.frontmostApplication()->name;
    EXPECT_THAT(said, ElementsAre("Applied RTL in " + name, "Applied LTR in " + name));
    EXPECT_THAT(pressed("AXTitle"), ElementsAre("Right to Left", "Left to Right"));
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(MenuBarDirectionTest, FindsTheCommandsOfTheParagraphByIdentifier) {
    openEditor();
    useIdentifiers();
    lookUp();
    adapter.apply(WritingDirection::leftToRight);
    adapter.apply(WritingDirection::rightToLeft);
    EXPECT_THAT(pressed("AXIdentifier"),
                ElementsAre("makeBaseWritingDirectionLeftToRight:", "makeBaseWritingDirectionRightToLeft:"));
}

TEST_F(MenuBarDirectionTest, LooksUpOnceAndNeverAgain) {
    openEditor();
    lookUp();
    desktop.accessibility.forgetCalls();
    const auto editor = pid;
    desktop.withFrontApplication("com.apple.finder");
    desktop.workspace.activate(editor);
    lookUp();
    EXPECT_TRUE(serves());
    EXPECT_THAT(desktop.accessibility.calls(), IsEmpty());
}

TEST_F(MenuBarDirectionTest, AnApplicationWithoutTheCommandsIsRememberedToo) {
    openEditor();
    tree().with("AXMenuBar", tree().add("AXMenuBar"));
    lookUp();
    EXPECT_FALSE(serves());
    desktop.accessibility.forgetCalls();
    lookUp();
    adapter.apply(WritingDirection::rightToLeft);
    EXPECT_THAT(desktop.accessibility.calls(), IsEmpty());
    EXPECT_THAT(said, IsEmpty());
}

TEST_F(MenuBarDirectionTest, AsksAnApplicationThatDoesNotAnswerThreeTimes) {
    openEditor();
    desktop.accessibility.stopAnswering(pid);
    for (int count = 0; count < 5; ++count) {
        lookUp();
    }
    EXPECT_EQ(desktop.accessibility.calls().size(), 3U);
    EXPECT_FALSE(serves());
}

TEST_F(MenuBarDirectionTest, ALookupHoldsNobodyUp) {
    openEditor();
    bar = &tree().add("AXMenuBar");
    tree().with("AXMenuBar", *bar);
    auto& menu = bar->add("AXMenuBarItem").add("AXMenu");
    for (int index = 0; index < 3000; ++index) {
        menu.add("AXMenuItem").with("AXTitle", std::string("Bookmark"));
    }
    adapter.lookUpFront();
    desktop.queue.runPosted();
    EXPECT_LE(desktop.accessibility.calls().size(), 8U);
    desktop.queue.advance(5s);
    EXPECT_LE(desktop.accessibility.calls().size(), 2002U);
    EXPECT_EQ(desktop.queue.timerCount(), 0U);
}

TEST_F(MenuBarDirectionTest, LooksThroughTwoThousandElements) {
    for (const int count : {1997, 1998}) { // besides the bar and the two commands
        openEditor();
        bar = &tree().add("AXMenuBar");
        tree().with("AXMenuBar", *bar);
        fill(*bar, count);
        for (const auto* direction : {"LeftToRight", "RightToLeft"}) {
            bar->add("AXMenuItem")
                .with("AXIdentifier", std::string("makeBaseWritingDirection") + direction + ":")
                .withAction("AXPress");
        }
        adapter.lookUpFront();
        desktop.queue.advance(2s);
        EXPECT_EQ(serves(), count == 1997);
        EXPECT_EQ(desktop.queue.timerCount(), 0U);
    }
}

TEST_F(MenuBarDirectionTest, BothCommandsAreNeeded) {
    const std::vector<std::pair<std::string, std::string>> halves{
        {"AXIdentifier", "makeBaseWritingDirectionRightToLeft:"}, {"AXTitle", "Right to Left"}};
    for (const auto& [attribute, value] : halves) {
        openEditor();
        bar = &tree().add("AXMenuBar");
        tree().with("AXMenuBar", *bar);
        auto& directions = bar->add("AXMenuItem").with("AXTitle", std::string("Writing Direction")).add("AXMenu");
        directions.add("AXMenuItem").with(attribute, value);
        lookUp();
        EXPECT_FALSE(serves()) << attribute;
    }
}

TEST_F(MenuBarDirectionTest, SupportedApplicationsAreNotLookedUp) {
    openApplication("com.apple.Notes");
    lookUp();
    EXPECT_THAT(desktop.accessibility.calls(), IsEmpty());
    EXPECT_FALSE(serves());
}

TEST_F(MenuBarDirectionTest, IsSilentWhereNoTextIsEdited) {
    openEditor();
    lookUp();
    field->with("AXSubrole", std::string("AXSecureTextField"));
    adapter.apply(WritingDirection::rightToLeft);
    field->without("AXSubrole").settable("AXValue", false);
    adapter.apply(WritingDirection::rightToLeft);
    focus(window->add("AXButton").with("AXEnabled", true));
    adapter.apply(WritingDirection::rightToLeft);
    desktop.accessibility.focus(pid, nullptr);
    adapter.apply(WritingDirection::rightToLeft);
    EXPECT_THAT(said, IsEmpty());
    EXPECT_THAT(desktop.accessibility.actions(), IsEmpty());
}

TEST_F(MenuBarDirectionTest, CommandsThatFailAreLookedUpAgain) {
    openEditor();
    useIdentifiers();
    lookUp();
    bar->present(false);
    useIdentifiers(); // the application has rebuilt its menus
    adapter.apply(WritingDirection::rightToLeft);
    EXPECT_THAT(said, ElementsAre("The app did not apply the direction command"));
    desktop.queue.advance(100ms);
    adapter.apply(WritingDirection::rightToLeft);
    EXPECT_THAT(pressed("AXIdentifier"), ElementsAre("makeBaseWritingDirectionRightToLeft:"));
}

TEST_F(MenuBarDirectionTest, AProcessThatTakesTheNumberOfAnotherIsLookedUp) {
    openEditor();
    lookUp();
    auto other = *desktop.workspace.frontmostApplication();
    other.bundleID = "org.example.other";
    EXPECT_FALSE(adapter.serves(other));
}

} // namespace
} // namespace quillane::testing
