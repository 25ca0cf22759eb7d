// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/direction/Labels.hpp"
#include "core/direction/WritingDirection.hpp"
#include "core/localization/TextRow.hpp"

#include <array>
#include <span>
#include <string_view>

namespace quillane::core {

/// How an application is made to set the direction of a paragraph: one adapter each.
enum class DirectionManner {
    outlookToolbar,     ///< the formatting toolbar of a message; in its subject line, the context menu
    contextMenu,        ///< a submenu of the editor's context menu
    wordRibbon,         ///< the ribbon's Home tab
    libreOfficeToolbar, ///< the formatting toolbar of a document
    swapCommand         ///< one item of the menu bar, which swaps the direction
};

inline constexpr std::array directionManners{DirectionManner::outlookToolbar, DirectionManner::contextMenu,
                                             DirectionManner::wordRibbon, DirectionManner::libreOfficeToolbar,
                                             DirectionManner::swapCommand};

/// How the editors of an application are recognised.
enum class EditorRule {
    webField,       ///< an editable field of a web page
    document,       ///< the text view with the row's `editorIdentifier`
    mailMessage,    ///< the subject and the body of a message in Mail
    subjectLine,    ///< the text field with the row's `editorIdentifier`
    outlookMessage, ///< the body of a message that is written in Outlook
    wordPage,       ///< a page of a Word document
    officeText,     ///< a paragraph of a LibreOffice document
    officeCell,     ///< the cells of a LibreOffice spreadsheet, or the text in one
};

/// Whether editors of this rule accept text though they do not look like editable fields (`EditableInputContext`).
[[nodiscard]] constexpr bool isUnlikeTextFields(EditorRule rule) {
    return rule == EditorRule::mailMessage || rule == EditorRule::wordPage;
}

/// The labels of the commands that an adapter looks for. Those that an application does not have are empty.
struct DirectionLabels {
    Labels rightToLeft{};
    Labels leftToRight{};
    Labels menu{};                            ///< of the submenu with the commands
    Labels paragraph{.english = "Paragraph"}; ///< the heading before the commands of the paragraph
    Labels selection{.english = "Selection"}; ///< the heading before those of the selected text
    Labels bar{};                             ///< of the toolbar, ribbon or menu with the commands
    Labels opener{};                          ///< of what brings up commands that the bar does not show
    bool identifiesActions = false;           ///< the items' "AXIdentifier" is the AppKit action that they send

    [[nodiscard]] constexpr const Labels& command(WritingDirection direction) const {
        return direction == WritingDirection::rightToLeft ? rightToLeft : leftToRight;
    }
};

/// An application in which direction commands work, and everything that the agent knows of it: one row of the table in
/// SupportedApplications.cpp.
struct SupportedApplication {
    std::string_view bundleID{};
    std::string_view displayName{};
    DirectionManner manner{};
    EditorRule editor{};
    std::string_view editorIdentifier{}; ///< the editor's "AXIdentifier", where the rule asks for one
    const DirectionLabels* labels{};
    TextRow<0> placementHint{};            ///< where to place the cursor
    const SupportedApplication* subject{}; ///< the subject line of a message, where it has other commands than the body
    /// The application builds its accessibility tree when an assistive program asks for it; see ChromiumFamily.hpp.
    bool buildsTreeOnDemand = false;
    std::array<std::string_view, 5> windowClasses{}; ///< on X11, in lower case; empty where it has no such edition

    /// The title of the submenu with the commands; empty where buttons are pressed instead.
    [[nodiscard]] constexpr std::string_view directionMenuTitle() const { return labels->menu.english; }
};

/// The labels of AppKit's own direction commands, which any application on macOS may have in its menu bar.
[[nodiscard]] const DirectionLabels& appKitDirectionLabels();

/// All rows, in the order of the test-target picker. Rows of several programs of one application follow each other.
[[nodiscard]] std::span<const SupportedApplication> supportedApplications();

/// The application with exactly this bundle identifier (case counts), or none. Of several programs in one application
/// it is the first.
[[nodiscard]] const SupportedApplication* supportedApplication(std::string_view bundleID);

/// The application whose windows have this class on X11, in lower case, or none.
[[nodiscard]] const SupportedApplication* applicationOfWindowClass(std::string_view windowClass);

/// Of the programs in one application, the one whose name ends the window's title; otherwise the given one.
[[nodiscard]] const SupportedApplication& programOfWindow(const SupportedApplication& application,
                                                          std::string_view windowTitle);

} // namespace quillane::core
