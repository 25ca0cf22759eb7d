// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/NativeDirectionTest.hpp"

namespace quillane::testing {
namespace {

TEST_F(NativeDirectionTest, ABrowserInAnotherLanguageIsUnderstood) {
    openApplication("org.chromium.Chromium");
    BrowserWaker(desktop.accessibility, desktop.workspace).wake();
    useEditor(window->add("AXWebArea").add("AXTextArea").with("AXEnabled", true).settable("AXValue"),
              "\u200Fכיוון כתיבה");
    commands[1]->with("AXTitle", "\u200Fמשמאל לימין");
    commands[2]->with("AXTitle", "\u200Fמימין לשמאל");
    apply(WritingDirection::rightToLeft, *core::supportedApplication("org.chromium.Chromium"));
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in Chromium"));
    EXPECT_EQ(countOf(*commands[2], "AXPress"), 1);
}

/// A text view of AppKit with a menu in an unknown language, whose items name the actions that they send.
class ActionIdentifierTest : public NativeDirectionTest {
protected:
    ActionIdentifierTest() {
        openApplication("com.apple.TextEdit");
        useEditor(window->addTextField("AXTextArea").with("AXIdentifier", "First Text View"), "Skrivriktning");
        name(commands[0], "makeBaseWritingDirectionNatural:");
        name(commands[1], "makeBaseWritingDirectionLeftToRight:");
        name(commands[2], "makeBaseWritingDirectionRightToLeft:");
        ofText = &submenu->add("AXMenuItem");
        name(ofText->withAction("AXPress"), "makeTextWritingDirectionRightToLeft:");
    }

    static void name(FakeElement& command, const std::string& action) {
        command.with("AXIdentifier", action).with("AXTitle", "Något");
    }

    static void name(FakeElement* command, const std::string& action) { name(*command, action); }

    FakeElement* ofText = nullptr; ///< the command of the selected text
};

TEST_F(ActionIdentifierTest, NeedsNoTitles) {
    apply(WritingDirection::rightToLeft, applications::textEdit);
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("Applied RTL in TextEdit"));
    EXPECT_EQ(countOf(*commands[2], "AXPress"), 1);
    EXPECT_EQ(countOf(*ofText, "AXPress"), 0);
}

TEST_F(ActionIdentifierTest, ComesBeforeTitles) {
    item->with("AXTitle", "Writing Direction");
    commands[1]->with("AXTitle", "Right to Left"); // whatever it is called, it is the other command
    apply(WritingDirection::rightToLeft, applications::textEdit);
    desktop.queue.advance(60ms);
    EXPECT_EQ(countOf(*commands[2], "AXPress"), 1);
    EXPECT_EQ(countOf(*commands[1], "AXPress"), 0);
}

TEST_F(ActionIdentifierTest, TheCommandOfTheSelectedTextIsNeverPressed) {
    for (auto* command : commands) {
        command->present(false);
    }
    apply(WritingDirection::rightToLeft, applications::textEdit);
    desktop.queue.advance(60ms);
    EXPECT_THAT(said, ElementsAre("This editor does not offer a paragraph direction command"));
    EXPECT_EQ(countOf(*ofText, "AXPress"), 0);
}

TEST_F(NativeDirectionTest, IdentifiersAreReadWhereTheyAreActionsOnly) {
    openChrome();
    apply();
    desktop.queue.advance(60ms);
    for (const auto& call : desktop.accessibility.calls()) {
        EXPECT_EQ(call.what.find("AXTitle,AXDescription,AXIdentifier"), std::string::npos) << call.what;
    }
}

} // namespace
} // namespace quillane::testing
