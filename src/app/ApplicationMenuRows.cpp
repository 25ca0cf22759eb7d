// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/ApplicationMenuRows.hpp"

#include "core/localization/Texts.hpp"

namespace quillane {

namespace texts = core::texts;

std::vector<ApplicationSubmenu> applicationMenuRows(core::AppLanguage language, const ApplicationMenuActions& actions) {
    const auto own = [&](const core::LocalizedText& title, std::string_view key, const std::function<void()>& action) {
        ApplicationMenuRow row;
        row.row.title = title.rendered(language);
        row.row.keyEquivalent = key;
        row.row.enabled = action != nullptr;
        row.row.action = action;
        return row;
    };
    const auto standard = [&](const core::LocalizedText& title, StandardCommand command) {
        ApplicationMenuRow row;
        row.row.title = title.rendered(language);
        row.standard = command;
        return row;
    };
    using Role = ApplicationSubmenu::Role;
    return {
        {Role::application,
         texts::quillane.rendered(language),
         {own(texts::settings, ",", actions.showSettings), own(texts::quillaneShare, "", actions.shareFile),
          standard(texts::hideQuillane, StandardCommand::hide), own(texts::quitQuillane, "q", actions.quit)}},
        {Role::edit,
         texts::edit.rendered(language),
         {standard(texts::undo, StandardCommand::undo), standard(texts::redo, StandardCommand::redo),
          standard(texts::cut, StandardCommand::cut), standard(texts::copy, StandardCommand::copy),
          standard(texts::paste, StandardCommand::paste), standard(texts::selectAll, StandardCommand::selectAll)}},
        {Role::windows,
         texts::window.rendered(language),
         {standard(texts::minimize, StandardCommand::minimize), standard(texts::close, StandardCommand::close)}},
    };
}

} // namespace quillane
