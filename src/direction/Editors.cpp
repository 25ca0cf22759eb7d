// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/Editors.hpp"

#include "core/direction/EditorContexts.hpp"
#include "direction/AX.hpp"

#include <array>

namespace quillane {

namespace {

using core::EditorRule;
using core::SupportedApplication;

constexpr std::size_t mailWindowLimit = 240;
constexpr std::size_t stepsToWebArea = 32;
constexpr std::size_t stepsToMessage = 12;

/// The attributes that the rules need, read in one call.
struct Field {
    std::string role;
    std::optional<std::string> subrole;
    std::optional<std::string> identifier;
    std::optional<std::string> description;
    bool enabled = false;
};

Field read(Accessibility& accessibility, const AXElement& element) {
    constexpr std::array<std::string_view, 5> names{"AXRole", "AXSubrole", "AXIdentifier", "AXDescription",
                                                    "AXEnabled"};
    const auto values =
        accessibility.attributes(element, names).value_or(std::vector<AXValue>(names.size(), AXValue()));
    const auto text = [&](std::size_t index) {
        const auto* exact = std::get_if<std::string>(&values.at(index));
        return exact != nullptr ? std::optional(*exact) : std::nullopt;
    };
    return {text(0).value_or(std::string()), text(1), text(2), text(3), ax::flag(values.at(4)).value_or(false)};
}

bool isField(Accessibility& accessibility, const AXElement& element, std::string_view identifier) {
    const auto field = read(accessibility, element);
    return field.identifier == identifier && field.role == "AXTextField";
}

core::EditableInputContext inputContext(Accessibility& accessibility, const AXElement& element, const Field& field) {
    return {.role = field.role,
            .subrole = field.subrole,
            .enabled = field.enabled,
            .valueIsSettable = accessibility.isAttributeSettable(element, "AXValue"),
            .selectedTextIsSettable = accessibility.isAttributeSettable(element, "AXSelectedText")};
}

bool isDocumentEditor(Accessibility& accessibility, const AXElement& element, const SupportedApplication& application) {
    const auto field = read(accessibility, element);
    return core::DocumentEditorContext{.application = application,
                                       .identifier = field.identifier,
                                       .input = inputContext(accessibility, element, field)}
        .isEligible();
}

bool isWebEditor(Accessibility& accessibility, const AXElement& element) {
    const bool settable = accessibility.isAttributeSettable(element, "AXValue");
    const auto parent = ax::element(accessibility, element, "AXParent");
    const bool inside = parent && ax::closest(accessibility, *parent, "AXWebArea", stepsToWebArea);
    const auto field = read(accessibility, element);
    return core::WebEditorContext{.role = field.role,
                                  .subrole = field.subrole,
                                  .enabled = field.enabled,
                                  .valueIsSettable = settable,
                                  .insideWebArea = inside}
        .isEligible();
}

/// A message is written in a window that has a subject line. The rest is read first: looking through the window is
/// expensive, and this also runs while a key waits.
bool isMailEditor(Accessibility& accessibility, const AXElement& element) {
    const auto field = read(accessibility, element);
    const core::MailEditorContext context{.role = field.role,
                                          .identifier = field.identifier,
                                          .description = field.description,
                                          .enabled = field.enabled,
                                          .writable = ax::isTextWritable(accessibility, element),
                                          .composeWindow = true};
    const auto window = context.isEligible() ? ax::element(accessibility, element, "AXWindow") : std::nullopt;
    constexpr std::array<std::string_view, 1> reading{"AXIdentifier"};
    const auto isSubject = [](const ax::Candidate& candidate) {
        return candidate.role == "AXTextField" &&
               candidate.text("AXIdentifier") == core::MailEditorContext::subjectIdentifier;
    };
    return window &&
           ax::find(accessibility, *window, {.limit = mailWindowLimit, .skipping = {}, .reading = reading}, isSubject)
               .has_value();
}

/// The body of a message that is written in Outlook is a page with an address of its own.
bool isOutlookMessage(Accessibility& accessibility, const AXElement& element) {
    if (ax::string(accessibility, element, "AXRole") != "AXTextArea") {
        return false;
    }
    const auto parent = ax::element(accessibility, element, "AXParent");
    const auto page = parent ? ax::closest(accessibility, *parent, "AXWebArea", stepsToMessage) : std::nullopt;
    const auto address = page ? ax::string(accessibility, *page, "AXURL") : std::nullopt;
    return address && address->starts_with("outlook-mobile-compose:");
}

bool isWordPage(Accessibility& accessibility, const AXElement& element) {
    const auto role = ax::string(accessibility, element, "AXRole").value_or(std::string());
    const auto description = ax::string(accessibility, element, "AXDescription");
    return core::WordEditorContext{
        .role = role, .description = description, .writable = ax::isTextWritable(accessibility, element)}
        .isEligible();
}

bool isOfficeText(Accessibility& accessibility, const AXElement& element) {
    return ax::string(accessibility, element, "AXRole") == "AXTextArea" && ax::isTextWritable(accessibility, element);
}

/// While no text is edited, the sheet has the focus, not the selected cell.
bool isOfficeCell(Accessibility& accessibility, const AXElement& element) {
    const auto role = ax::string(accessibility, element, "AXRole");
    return role == "AXTable" || role == "AXCell" || isOfficeText(accessibility, element);
}

} // namespace

bool isDirectionEditor(Accessibility& accessibility, const AXElement& focused,
                       const SupportedApplication& application) {
    switch (application.editor) {
    case EditorRule::webField:
        return isWebEditor(accessibility, focused);
    case EditorRule::document:
        return isDocumentEditor(accessibility, focused, application);
    case EditorRule::mailMessage:
        return isMailEditor(accessibility, focused);
    case EditorRule::subjectLine:
        return isField(accessibility, focused, application.editorIdentifier) &&
               accessibility.isAttributeSettable(focused, "AXValue") &&
               ax::flag(accessibility, focused, "AXEnabled") == true;
    case EditorRule::outlookMessage:
        return isOutlookMessage(accessibility, focused);
    case EditorRule::wordPage:
        return isWordPage(accessibility, focused);
    case EditorRule::officeText:
        return isOfficeText(accessibility, focused);
    case EditorRule::officeCell:
        return isOfficeCell(accessibility, focused);
    }
    return false;
}

bool isEditableInput(Accessibility& accessibility, const AXElement& focused) {
    return inputContext(accessibility, focused, read(accessibility, focused)).isEligible();
}

bool isSubjectLine(Accessibility& accessibility, const AXElement& focused, const SupportedApplication& application) {
    return application.subject != nullptr && isField(accessibility, focused, application.subject->editorIdentifier);
}

} // namespace quillane
