// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "core/direction/EditorContexts.hpp"

#include <gtest/gtest.h>

namespace quillane::core {
namespace {

EditableInputContext editable(std::string role = "AXTextField") {
    return {.role = std::move(role),
            .subrole = std::nullopt,
            .enabled = true,
            .valueIsSettable = true,
            .selectedTextIsSettable = true};
}

TEST(EditableInputContext, ThreeRolesAreEditable) {
    for (const auto* role : {"AXTextField", "AXTextArea", "AXComboBox"}) {
        EXPECT_TRUE(editable(role).isEligible()) << role;
    }
    for (const auto* role : {"AXWebArea", "AXStaticText", "AXButton", "axtextfield", ""}) {
        EXPECT_FALSE(editable(role).isEligible()) << role;
    }
}

TEST(EditableInputContext, APasswordFieldIsNeverEligible) {
    for (const auto* role : {"AXTextField", "AXTextArea", "AXComboBox"}) {
        auto context = editable(role);
        context.subrole = "AXSecureTextField";
        EXPECT_FALSE(context.isEligible());
    }
}

TEST(EditableInputContext, AnotherSubroleIsFine) {
    auto context = editable();
    context.subrole = "AXSearchField";
    EXPECT_TRUE(context.isEligible());
}

TEST(EditableInputContext, MustBeEnabled) {
    auto context = editable();
    context.enabled = false;
    EXPECT_FALSE(context.isEligible());
}

TEST(EditableInputContext, OneSettableAttributeIsEnough) {
    auto context = editable();
    context.valueIsSettable = false;
    EXPECT_TRUE(context.isEligible());
    context.selectedTextIsSettable = false;
    EXPECT_FALSE(context.isEligible());
    context.valueIsSettable = true;
    EXPECT_TRUE(context.isEligible());
}

TEST(EditorContexts, WhatIsNotKnownIsNotThere) {
    EXPECT_FALSE((EditableInputContext{.role = "AXTextField", .valueIsSettable = true}.isEligible()));
    EXPECT_FALSE((EditableInputContext{.role = "AXTextField", .enabled = true}.isEligible()));
    EXPECT_FALSE((WebEditorContext{.role = "AXTextArea", .valueIsSettable = true, .insideWebArea = true}.isEligible()));
    EXPECT_FALSE((WebEditorContext{.role = "AXTextArea", .enabled = true, .insideWebArea = true}.isEligible()));
    EXPECT_FALSE((WebEditorContext{.role = "AXTextArea", .enabled = true, .valueIsSettable = true}.isEligible()));
    MailEditorContext mail{.role = "AXTextField", .identifier = MailEditorContext::subjectIdentifier};
    EXPECT_FALSE(mail.enabled);
    EXPECT_FALSE(mail.writable);
    EXPECT_FALSE(mail.composeWindow);
    EXPECT_FALSE((WordEditorContext{.role = "AXTextArea", .description = "Page 3 content"}.isEligible()));
}

WebEditorContext webEditor() {
    return {
        .role = "AXTextArea", .subrole = std::nullopt, .enabled = true, .valueIsSettable = true, .insideWebArea = true};
}

TEST(WebEditorContext, NeedsEverything) {
    EXPECT_TRUE(webEditor().isEligible());
    auto context = webEditor();
    context.role = "AXWebArea";
    EXPECT_FALSE(context.isEligible());
    context = webEditor();
    context.subrole = "AXSecureTextField";
    EXPECT_FALSE(context.isEligible());
    context = webEditor();
    context.enabled = false;
    EXPECT_FALSE(context.isEligible());
    context = webEditor();
    context.valueIsSettable = false;
    EXPECT_FALSE(context.isEligible());
    context = webEditor();
    context.insideWebArea = false;
    EXPECT_FALSE(context.isEligible());
}

MailEditorContext mailSubject() {
    return {.role = "AXTextField",
            .identifier = "Mail.subjectField",
            .description = std::nullopt,
            .enabled = true,
            .writable = true,
            .composeWindow = true};
}

MailEditorContext mailBody() {
    auto context = mailSubject();
    context.role = "AXWebArea";
    context.identifier.reset();
    context.description = "message body";
    return context;
}

TEST(MailEditorContext, SubjectAndBodyAre) {
    EXPECT_TRUE(mailSubject().isEligible());
    EXPECT_TRUE(mailBody().isEligible());
}

TEST(MailEditorContext, OnlyWhereAMessageIsWritten) {
    for (auto context : {mailSubject(), mailBody()}) {
        context.composeWindow = false;
        EXPECT_FALSE(context.isEligible());
    }
}

TEST(MailEditorContext, MustBeEnabledAndWritable) {
    for (auto context : {mailSubject(), mailBody()}) {
        context.enabled = false;
        EXPECT_FALSE(context.isEligible());
        context.enabled = true;
        context.writable = false;
        EXPECT_FALSE(context.isEligible());
    }
}

TEST(MailEditorContext, NothingElseInMailIs) {
    auto context = mailSubject();
    context.identifier = "Mail.toField";
    EXPECT_FALSE(context.isEligible());
    context.identifier.reset();
    EXPECT_FALSE(context.isEligible());
    context = mailSubject();
    context.role = "AXTextArea";
    EXPECT_FALSE(context.isEligible());
    context = mailBody();
    context.description = "Message body";
    EXPECT_FALSE(context.isEligible());
    context.description.reset();
    EXPECT_FALSE(context.isEligible());
    context = mailBody();
    context.role = "AXTextField";
    EXPECT_FALSE(context.isEligible());
}

bool isWordPage(const char* description) {
    return WordEditorContext{.role = "AXTextArea", .description = std::string_view(description), .writable = true}
        .isEligible();
}

TEST(WordEditorContext, APageWithItsNumber) {
    EXPECT_TRUE(isWordPage("Page 3 content"));
    EXPECT_TRUE(isWordPage("Page 12 content"));
    EXPECT_TRUE(isWordPage("Page ١٢ content")) << "digits of any script";
    EXPECT_TRUE(isWordPage("Page ½ content")) << "numeric, though no digit";
    EXPECT_TRUE(isWordPage("Page Ⅻ content"));
    EXPECT_TRUE(isWordPage("Page 𝟘 content")) << "beyond the basic plane";
    EXPECT_TRUE(isWordPage("Page 三 content")) << "numeric, though a letter";
}

TEST(WordEditorContext, AnythingElseIsNotEligible) {
    for (const auto* description :
         {"", "Page content", "Page  content", "Page x content", "page 3 content", "Page 3 Content", "Page 3",
          "3 content", "Page 3x content", "Page 3 4 content", "Page -3 content", "Page 1.5 content", " Page 3 content",
          "Page 3 content ", "Page \xFF content", "Page 1\xC2 content"}) {
        EXPECT_FALSE(isWordPage(description)) << description;
    }
}

TEST(WordEditorContext, RoleDescriptionAndWritableAreNeeded) {
    WordEditorContext context{.role = "AXTextArea", .description = "Page 3 content", .writable = true};
    EXPECT_TRUE(context.isEligible());
    context.writable = false;
    EXPECT_FALSE(context.isEligible());
    context.writable = true;
    context.role = "AXTextField";
    EXPECT_FALSE(context.isEligible());
    context.role = "AXTextArea";
    context.description.reset();
    EXPECT_FALSE(context.isEligible());
}

const SupportedApplication& notes = *supportedApplication("com.apple.Notes");
const SupportedApplication& textEdit = *supportedApplication("com.apple.TextEdit");

DocumentEditorContext document(const SupportedApplication& application, std::optional<std::string_view> identifier) {
    return {.application = application, .identifier = identifier, .input = editable("AXTextArea")};
}

TEST(DocumentEditorContext, TheBodyOfEachApplication) {
    EXPECT_TRUE(document(notes, "Note Body Text View").isEligible());
    EXPECT_TRUE(document(textEdit, "First Text View").isEligible());
}

TEST(DocumentEditorContext, AnotherIdentifierIsNotEligible) {
    EXPECT_FALSE(document(notes, "First Text View").isEligible());
    EXPECT_FALSE(document(textEdit, "Note Body Text View").isEligible());
    EXPECT_FALSE(document(textEdit, std::nullopt).isEligible());
}

TEST(DocumentEditorContext, NoOtherApplicationHasOne) {
    for (const auto& other : supportedApplications()) {
        if (&other != &notes && &other != &textEdit) {
            EXPECT_FALSE(document(other, "First Text View").isEligible()) << other.displayName;
            EXPECT_FALSE(document(other, "Note Body Text View").isEligible()) << other.displayName;
            EXPECT_FALSE(document(other, other.editorIdentifier).isEligible()) << other.displayName;
        }
    }
}

TEST(DocumentEditorContext, TheInputMustBeAnEligibleTextArea) {
    auto context = document(textEdit, "First Text View");
    context.input.role = "AXTextField";
    EXPECT_FALSE(context.isEligible());
    context.input = editable("AXTextArea");
    context.input.enabled = false;
    EXPECT_FALSE(context.isEligible());
    context.input = editable("AXTextArea");
    context.input.subrole = "AXSecureTextField";
    EXPECT_FALSE(context.isEligible());
    context.input = editable("AXTextArea");
    context.input.valueIsSettable = false;
    EXPECT_TRUE(context.isEligible());
    context.input.selectedTextIsSettable = false;
    EXPECT_FALSE(context.isEligible());
}

} // namespace
} // namespace quillane::core
