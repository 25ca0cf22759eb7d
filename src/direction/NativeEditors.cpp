// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/NativeEditors.hpp"

#include "core/direction/EditorContexts.hpp"
#include "direction/AX.hpp"

#include <array>

namespace quillane {

namespace {

using core::SupportedApplication;

constexpr std::string_view mailSubject = "Mail.subjectField";
constexpr std::size_t mailWindowLimit = 240;
constexpr std::size_t stepsToWebArea = 32;

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

bool isDocumentEditor(Accessibility& accessibility, const AXElement& element, SupportedApplication application) {
    const auto field = read(accessibility, element);
    const core::EditableInputContext input{.role = field.role,
                                           .subrole = field.subrole,
                                           .enabled = field.enabled,
                                           .valueIsSettable = accessibility.isAttributeSettable(element, "AXValue"),
                                           .selectedTextIsSettable =
                                               accessibility.isAttributeSettable(element, "AXSelectedText")};
    return core::DocumentEditorContext{.application = application, .identifier = field.identifier, .input = input}
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

bool isMailEditor(Accessibility& accessibility, const AXElement& element) {
    const auto window = ax::element(accessibility, element, "AXWindow");
    if (!window) {
        return false;
    }
    constexpr std::array<std::string_view, 1> reading{"AXIdentifier"};
    const auto isSubject = [](const ax::Candidate& candidate) {
        return candidate.role == "AXTextField" && candidate.text("AXIdentifier") == mailSubject;
    };
    const bool composes =
        ax::find(accessibility, *window, {.limit = mailWindowLimit, .skipping = {}, .reading = reading}, isSubject)
            .has_value();
    const auto field = read(accessibility, element);
    return core::MailEditorContext{.role = field.role,
                                   .identifier = field.identifier,
                                   .description = field.description,
                                   .enabled = field.enabled,
                                   .writable = ax::isTextWritable(accessibility, element),
                                   .composeWindow = composes}
        .isEligible();
}

} // namespace

bool isDirectionEditor(Accessibility& accessibility, const AXElement& focused, SupportedApplication application) {
    switch (application) {
    case SupportedApplication::textEdit:
    case SupportedApplication::notes:
        return isDocumentEditor(accessibility, focused, application);
    case SupportedApplication::chrome:
    case SupportedApplication::safari:
        return isWebEditor(accessibility, focused);
    case SupportedApplication::mail:
        return isMailEditor(accessibility, focused);
    case SupportedApplication::outlook:
        return isOutlookSubject(accessibility, focused) && accessibility.isAttributeSettable(focused, "AXValue") &&
               ax::flag(accessibility, focused, "AXEnabled") == true;
    case SupportedApplication::word:
        break;
    }
    return false;
}

bool isMailSubject(Accessibility& accessibility, const AXElement& focused) {
    return isField(accessibility, focused, mailSubject);
}

bool isOutlookSubject(Accessibility& accessibility, const AXElement& focused) {
    return isField(accessibility, focused, "subjectTextField");
}

} // namespace quillane
