// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/Editors.hpp"

#include "direction/DirectionTest.hpp"

namespace quillane::testing {
namespace {

class EditorsTest : public DirectionTest {
protected:
    bool isEditor(FakeElement& element, const SupportedApplication& application) {
        return isDirectionEditor(desktop.accessibility, desktop.accessibility.reference(element), application);
    }

    bool isEditable(FakeElement& element) {
        return isEditableInput(desktop.accessibility, desktop.accessibility.reference(element));
    }

    bool isSubject(FakeElement& element, const SupportedApplication& application) {
        return isSubjectLine(desktop.accessibility, desktop.accessibility.reference(element), application);
    }

    /// A field in a message window whose subject line is the last of that many elements.
    FakeElement& openMessage(int elements) {
        openApplication("com.apple.mail");
        auto& body = window->add("AXWebArea")
                         .with("AXEnabled", true)
                         .with("AXDescription", std::string("message body"))
                         .with("AXWindow", *window)
                         .settable("AXValue");
        fill(*window, elements - 3);
        window->addTextField().with("AXIdentifier", std::string("Mail.subjectField"));
        return body;
    }
};

TEST_F(EditorsTest, FieldOfAPageIsWithinThirtyTwoSteps) {
    openApplication("com.apple.Safari");
    auto* deep = &window->add("AXWebArea");
    for (int step = 0; step < 31; ++step) {
        deep = &deep->add("AXGroup");
    }
    EXPECT_TRUE(isEditor(deep->addTextField(), applications::safari));
    EXPECT_FALSE(isEditor(deep->add("AXGroup").addTextField(), applications::safari));
    EXPECT_FALSE(isEditor(window->addTextField(), applications::safari));
}

TEST_F(EditorsTest, SubjectLineIsAmongTwoHundredAndFortyElementsOfTheWindow) {
    EXPECT_TRUE(isEditor(openMessage(240), applications::mail));
    EXPECT_FALSE(isEditor(openMessage(241), applications::mail));
}

TEST_F(EditorsTest, OnlyATextFieldIsTheSubjectLineOfAMessage) {
    auto& body = openMessage(3);
    EXPECT_TRUE(isEditor(body, applications::mail));
    body.without("AXWindow");
    EXPECT_FALSE(isEditor(body, applications::mail));
    openApplication("com.apple.mail");
    body.with("AXWindow", *window);
    window->addTextField("AXButton").with("AXIdentifier", std::string("Mail.subjectField"));
    EXPECT_FALSE(isEditor(body, applications::mail));
}

TEST_F(EditorsTest, WindowIsNotSearchedForWhatCannotBeAnEditor) {
    auto& body = openMessage(3).settable("AXValue", false);
    desktop.accessibility.forgetCalls();
    EXPECT_FALSE(isEditor(body, applications::mail));
    for (const auto& call : desktop.accessibility.calls()) {
        EXPECT_NE(call.what, "AXWindow");
    }
}

TEST_F(EditorsTest, SubjectLineOfOutlookIsAnEnabledFieldThatCanBeWritten) {
    openApplication("com.microsoft.Outlook");
    auto& field = window->addTextField().with("AXIdentifier", std::string("subjectTextField"));
    const auto& subject = *applications::outlook.subject;
    EXPECT_TRUE(isEditor(field, subject));
    EXPECT_TRUE(isSubject(field, applications::outlook));
    EXPECT_FALSE(isSubject(field, applications::mail));
    EXPECT_FALSE(isSubject(field, applications::word));
    field.with("AXEnabled", false);
    EXPECT_FALSE(isEditor(field, subject));
    field.with("AXEnabled", true).settable("AXValue", false).settable("AXSelectedText");
    EXPECT_FALSE(isEditor(field, subject));
    field.settable("AXValue").with("AXRole", std::string("AXTextArea"));
    EXPECT_FALSE(isEditor(field, subject));
    EXPECT_FALSE(isSubject(field, applications::outlook));
}

TEST_F(EditorsTest, BodyOfOutlookIsATextAreaOfItsComposePage) {
    openApplication("com.microsoft.Outlook");
    auto& page = window->add("AXWebArea").with("AXURL", std::string("outlook-mobile-compose:1"));
    auto& body = page.addTextField("AXTextArea");
    EXPECT_TRUE(isEditor(body, applications::outlook));
    EXPECT_FALSE(isEditor(page.addTextField(), applications::outlook));
    EXPECT_FALSE(isEditor(page, applications::outlook));
    page.with("AXURL", std::string("outlook-mobile-read:1"));
    EXPECT_FALSE(isEditor(body, applications::outlook));
}

TEST_F(EditorsTest, PagesOfWordAndTextOfLibreOfficeMayBeWritableBySelection) {
    openApplication("com.microsoft.Word");
    auto& page = window->add("AXTextArea").with("AXDescription", std::string("Page 2 content"));
    const auto& writer = *core::supportedApplication("org.libreoffice.script");
    for (const auto* application : {&applications::word, &writer}) {
        page.settable("AXSelectedText", false);
        EXPECT_FALSE(isEditor(page, *application));
        page.settable("AXSelectedText");
        EXPECT_TRUE(isEditor(page, *application));
    }
    page.with("AXRole", std::string("AXTextField"));
    EXPECT_FALSE(isEditor(page, writer));
}

TEST_F(EditorsTest, EditableInputIsAnEnabledFieldThatHidesNothing) {
    openApplication("org.example.editor");
    auto& field = window->addTextField();
    EXPECT_TRUE(isEditable(field));
    EXPECT_FALSE(isEditable(field.with("AXEnabled", false)));
    EXPECT_TRUE(isEditable(field.with("AXEnabled", std::int64_t{1})));
    EXPECT_TRUE(isEditable(field.settable("AXValue", false).settable("AXSelectedText")));
    EXPECT_FALSE(isEditable(field.with("AXSubrole", std::string("AXSecureTextField"))));
    EXPECT_FALSE(isEditable(field.without("AXSubrole").without("AXEnabled")));
    EXPECT_FALSE(isEditable(field.with("AXEnabled", true).failing()));
}

} // namespace
} // namespace quillane::testing
