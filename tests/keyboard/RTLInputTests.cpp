// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "keyboard/RTLInput.hpp"

#include "fakes/FakeDesktop.hpp"

#include <gmock/gmock.h>

namespace quillane {
namespace {

using namespace std::chrono_literals;
using ::testing::Each;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Optional;

class RTLInputTest : public ::testing::Test {
protected:
    RTLInputTest() { desktop.withFrontApplication("org.example.Editor"); }

    fakes::FakeElement& tree() { return desktop.accessibility.tree(desktop.frontPid()); }

    void focus(fakes::FakeElement& element) { desktop.accessibility.focus(desktop.frontPid(), &element); }

    bool editable() { return input.hasEditableFocus(desktop.frontPid()); }

    fakes::FakeDesktop desktop;
    RTLInput input{desktop.inputSources, desktop.accessibility, desktop.workspace};
};

TEST_F(RTLInputTest, CurrentHasTheNameAndTheDirection) {
    desktop.withInputSources({fakes::hebrew()});
    EXPECT_EQ(input.current(), (InputSourceSummary{"Hebrew", true}));
    desktop.withInputSources({fakes::arabic()});
    EXPECT_EQ(input.current(), (InputSourceSummary{"Arabic", true}));
    desktop.withInputSources({fakes::english()});
    EXPECT_EQ(input.current(), (InputSourceSummary{"U.S.", false}));
}

TEST_F(RTLInputTest, ASourceWithoutLanguagesIsNotRightToLeft) {
    desktop.withInputSources({{.id = "x", .localizedName = "Unicode Hex", .languages = {}}});
    EXPECT_EQ(input.current(), (InputSourceSummary{"Unicode Hex", false}));
}

TEST_F(RTLInputTest, WithoutACurrentSourceThereIsNoName) {
    EXPECT_EQ(input.current(), InputSourceSummary());
}

TEST_F(RTLInputTest, TextFieldsAreEditable) {
    for (const auto* role : {"AXTextField", "AXTextArea", "AXComboBox"}) {
        focus(tree().addTextField(role));
        EXPECT_TRUE(editable()) << role;
    }
}

TEST_F(RTLInputTest, ASettableSelectedTextIsEnough) {
    focus(tree().add("AXTextArea").with("AXEnabled", true).settable("AXSelectedText"));
    EXPECT_TRUE(editable());
}

TEST_F(RTLInputTest, AReadOnlyElementIsNotEditable) {
    focus(tree().add("AXTextField").with("AXEnabled", true));
    EXPECT_FALSE(editable()) << "nothing settable";
    focus(tree().addTextField().with("AXEnabled", false));
    EXPECT_FALSE(editable()) << "disabled";
    focus(tree().addTextField().without("AXEnabled"));
    EXPECT_FALSE(editable()) << "not said to be enabled";
    focus(tree().addTextField("AXButton"));
    EXPECT_FALSE(editable()) << "another role";
    focus(tree().addTextField().without("AXRole"));
    EXPECT_FALSE(editable()) << "no role";
    focus(tree().addTextField().with("AXRole", true));
    EXPECT_FALSE(editable()) << "a role that is no text";
    focus(tree().addTextField().with("AXEnabled", "yes"));
    EXPECT_FALSE(editable()) << "a flag that is none";
}

TEST_F(RTLInputTest, TheNumbersZeroAndOneAreFlags) {
    focus(tree().addTextField().with("AXEnabled", std::int64_t{1}));
    EXPECT_TRUE(editable());
    focus(tree().addTextField().with("AXEnabled", std::int64_t{0}));
    EXPECT_FALSE(editable());
    focus(tree().addTextField().with("AXEnabled", std::int64_t{2}));
    EXPECT_FALSE(editable()) << "another number";
}

TEST_F(RTLInputTest, APasswordFieldIsNotEditable) {
    desktop.withFocusedPasswordField();
    EXPECT_FALSE(editable());
}

TEST_F(RTLInputTest, NothingIsEditableWithoutAFocus) {
    EXPECT_FALSE(editable()) << "no tree";
    desktop.accessibility.focus(desktop.frontPid(), nullptr);
    EXPECT_FALSE(editable()) << "no focus";
    tree().with("AXFocusedUIElement", "text");
    EXPECT_FALSE(editable()) << "a focus that is no element";
}

TEST_F(RTLInputTest, AFailureIsNotEditable) {
    auto& field = tree().addTextField();
    focus(field);
    field.failing();
    EXPECT_FALSE(editable());
    field.failing(false);
    EXPECT_TRUE(editable());
    tree().failing();
    EXPECT_FALSE(editable());
}

TEST_F(RTLInputTest, EachQuestionWaitsFifteenMillisecondsAtMost) {
    desktop.withFrontApplication("com.apple.mail");
    auto& window = tree().add("AXWindow");
    window.addTextField().with("AXIdentifier", "Mail.subjectField");
    focus(window.add("AXWebArea")
              .with("AXDescription", "message body")
              .with("AXEnabled", true)
              .with("AXWindow", window)
              .settable("AXSelectedText"));
    ASSERT_TRUE(editable());
    using Call = fakes::FakeAccessibility::Call;
    EXPECT_THAT(desktop.accessibility.calls(), Not(IsEmpty()));
    EXPECT_THAT(desktop.accessibility.calls(), Each(Field(&Call::timeout, Optional(15ms))));
}

TEST_F(RTLInputTest, AHangingApplicationIsAskedOnce) {
    desktop.withFocusedTextField();
    desktop.accessibility.stopAnswering(desktop.frontPid());
    EXPECT_FALSE(editable());
    EXPECT_EQ(desktop.accessibility.calls().size(), 1U);
}

class MailInputTest : public RTLInputTest {
protected:
    MailInputTest() {
        desktop.withFrontApplication("com.apple.mail");
        window = &tree().add("AXWindow");
    }

    /// The body of a message, focused.
    fakes::FakeElement& body() {
        auto& made = window->add("AXScrollArea")
                         .add("AXWebArea")
                         .with("AXDescription", "message body")
                         .with("AXEnabled", true)
                         .with("AXWindow", *window)
                         .settable("AXSelectedText");
        focus(made);
        return made;
    }

    fakes::FakeElement& subject(fakes::FakeElement& parent) {
        return parent.addTextField().with("AXIdentifier", "Mail.subjectField");
    }

    fakes::FakeElement* window;
};

TEST_F(MailInputTest, TheBodyOfAMessageBeingWrittenIsEditable) {
    subject(window->add("AXGroup").add("AXGroup"));
    body();
    EXPECT_TRUE(editable());
}

TEST_F(MailInputTest, TheSubjectIsEditableAsAnyField) {
    focus(subject(*window));
    EXPECT_TRUE(editable());
}

TEST_F(MailInputTest, AMessageBeingReadIsNotEditable) {
    body();
    EXPECT_FALSE(editable());
}

TEST_F(MailInputTest, AReadOnlyOrDisabledBodyIsNotEditable) {
    subject(*window);
    body().settable("AXSelectedText", false);
    EXPECT_FALSE(editable());
    body().with("AXEnabled", false);
    EXPECT_FALSE(editable());
    body().with("AXDescription", "something else");
    EXPECT_FALSE(editable());
    EXPECT_TRUE((body(), editable()));
}

TEST_F(MailInputTest, IsNotEditableWithoutAWindow) {
    subject(*window);
    body().without("AXWindow");
    EXPECT_FALSE(editable());
}

TEST_F(MailInputTest, TheSubjectIsSoughtNearTheTopAndNotInsideTexts) {
    body();
    subject(window->add("AXTable"));
    EXPECT_FALSE(editable());
    auto* group = &window->add("AXGroup");
    for (int count = 0; count < 235; ++count) {
        group->add("AXButton");
    }
    auto& last = group->add("AXTextField");
    last.with("AXIdentifier", "Mail.subjectField");
    EXPECT_FALSE(editable())
        << "the 241st in breadth first order, after the window, its three children, the body and the buttons";
    auto& other = tree().add("AXWindow");
    auto& web = other.add("AXWebArea")
                    .with("AXDescription", "message body")
                    .with("AXEnabled", true)
                    .with("AXWindow", other)
                    .settable("AXValue");
    for (int count = 0; count < 237; ++count) {
        other.add("AXButton");
    }
    subject(other);
    focus(web);
    EXPECT_TRUE(editable()) << "the 240th";
}

TEST_F(MailInputTest, WhenMailCeasesToAnswerTheSearchEnds) {
    body();
    for (int count = 0; count < 100; ++count) {
        window->add("AXGroup").hanging();
    }
    subject(*window);
    EXPECT_FALSE(editable());
    EXPECT_LT(desktop.accessibility.calls().size(), 20U);
}

TEST_F(MailInputTest, OtherElementsAreNotSearchedFor) {
    focus(window->add("AXButton").with("AXEnabled", true).with("AXWindow", *window));
    EXPECT_FALSE(editable());
    EXPECT_LT(desktop.accessibility.calls().size(), 12U);
}

TEST_F(MailInputTest, AWebAreaOfAnotherApplicationIsNotEditable) {
    desktop.withFrontApplication("com.apple.Mail");
    window = &tree().add("AXWindow");
    subject(*window);
    body();
    EXPECT_FALSE(editable());
}

TEST_F(RTLInputTest, APageOfWordIsEditable) {
    desktop.withFrontApplication("com.microsoft.Word");
    auto& page = tree().add("AXTextArea").with("AXDescription", "Page 12 content").settable("AXValue");
    focus(page);
    EXPECT_TRUE(editable()) << "though it is not said to be enabled";
    page.with("AXDescription", "Page content");
    EXPECT_FALSE(editable());
    page.with("AXDescription", "Page 12 content").settable("AXValue", false);
    EXPECT_FALSE(editable());
    page.settable("AXSelectedText");
    EXPECT_TRUE(editable());
    page.with("AXRole", "AXGroup");
    EXPECT_FALSE(editable());
}

TEST_F(RTLInputTest, ThePageRuleIsForWordAlone) {
    focus(tree().add("AXTextArea").with("AXDescription", "Page 12 content").settable("AXValue"));
    EXPECT_FALSE(editable());
}

TEST_F(RTLInputTest, TheRulesOfAnApplicationHoldWhileItIsInFront) {
    desktop.withFrontApplication("com.microsoft.Word");
    const auto word = desktop.frontPid();
    focus(tree().add("AXTextArea").with("AXDescription", "Page 12 content").settable("AXValue"));
    desktop.switchTo("org.example.Editor");
    EXPECT_FALSE(input.hasEditableFocus(word));
    const auto editor = desktop.frontPid();
    focus(tree().add("AXTextArea").with("AXDescription", "Page 12 content").settable("AXValue"));
    desktop.switchTo("com.microsoft.Word");
    EXPECT_TRUE(input.hasEditableFocus(word));
    EXPECT_FALSE(input.hasEditableFocus(editor));
}

} // namespace
} // namespace quillane
