// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "direction/LibreOfficeDirectionAdapter.hpp"

#include "core/direction/DirectionTarget.hpp"
#include "core/localization/Texts.hpp"
#include "direction/AX.hpp"

#include <array>
#include <utility>

namespace quillane {

namespace {

namespace texts = core::texts;

constexpr std::size_t limit = 240; // of the window, and of one toolbar

// The whole tree has thousands of elements: the window is searched for toolbars, and each toolbar by itself.
constexpr std::array<std::string_view, 2> besideToolbars{"AXMenuBar", "AXToolbar"};

} // namespace

LibreOfficeDirectionAdapter::LibreOfficeDirectionAdapter(DirectionServices services, DirectionReport report)
    : services_(services), report_(std::move(report)) {}

void LibreOfficeDirectionAdapter::apply(core::WritingDirection direction) {
    const auto front = services_.workspace.frontmostApplication();
    if (!front || front->bundleID != core::libreOfficeBundleID) {
        return;
    }
    auto& accessibility = services_.accessibility;
    const auto application = accessibility.application(front->pid);
    accessibility.setMessagingTimeout(application, directionPatience);
    const auto editor = AX::element(accessibility, application, "AXFocusedUIElement");
    const auto window =
        editor && isParagraph(*editor) ? AX::element(accessibility, application, "AXFocusedWindow") : std::nullopt;
    if (!window || !AX::isDescendant(accessibility, *editor, *window)) {
        report_(texts::placeCursorInWriter);
        return;
    }
    const auto button = directionButton(*window, direction);
    if (!button) {
        report_(texts::showFormattingToolbarInWriter);
    } else if (AX::element(accessibility, application, "AXFocusedUIElement") != editor) {
        report_(texts::focusMovedToAnotherField);
    } else if (AX::press(accessibility, *button)) {
        report_(texts::appliedDirectionInWriter(core::rawValue(direction)));
    } else {
        report_(texts::writerCannotChangeDirection);
    }
}

bool LibreOfficeDirectionAdapter::isParagraph(const AXElement& element) const {
    auto& accessibility = services_.accessibility;
    return AX::string(accessibility, element, "AXRole") == "AXTextArea" && AX::isTextWritable(accessibility, element);
}

std::optional<AXElement> LibreOfficeDirectionAdapter::directionButton(const AXElement& window,
                                                                      core::WritingDirection direction) const {
    const std::string_view label = direction == core::WritingDirection::rightToLeft ? "Right-To-Left" : "Left-To-Right";
    std::optional<AXElement> button;
    const auto holdsButton = [&](const AX::Candidate& toolbar) {
        if (toolbar.role == "AXToolbar") {
            button = AX::find(services_.accessibility, toolbar.element,
                              {.limit = limit, .skipping = {}, .reading = AX::labelNames},
                              [&](const AX::Candidate& candidate) {
                                  return (candidate.role == "AXButton" || candidate.role == "AXCheckBox") &&
                                         candidate.isLabelled(label);
                              });
        }
        return button.has_value();
    };
    static_cast<void>(AX::find(services_.accessibility, window,
                               {.limit = limit, .skipping = besideToolbars, .reading = {}}, holdsButton));
    return button;
}

} // namespace quillane
