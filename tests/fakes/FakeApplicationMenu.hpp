// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ApplicationMenu.hpp"
#include "support/Journal.hpp"
#include "support/MenuRows.hpp"

#include <string_view>
#include <utility>

namespace quillane::fakes {

/// A main menu that keeps what it was given and lets a test choose a row.
class FakeApplicationMenu final : public ApplicationMenu {
public:
    void install(std::vector<ApplicationSubmenu> menus, LayoutDirection direction) override {
        note(journal, "install");
        ++installCount_;
        menus_ = std::move(menus);
        direction_ = direction;
    }

    /// Chooses the first row with this title. Rows of standard commands are carried out by the system: they are only
    /// recorded.
    void click(std::string_view title) {
        for (const auto& menu : menus_) {
            for (const auto& [row, standard] : menu.rows) {
                if (row.title == title) {
                    return standard ? standardCommands_.push_back(*standard) : choose(row);
                }
            }
        }
        throw std::out_of_range("No row has the title " + std::string(title));
    }

    /// Chooses the row whose key this is, as a key press does: never one that is disabled.
    void press(std::string_view key) {
        for (const auto& menu : menus_) {
            for (const auto& [row, standard] : menu.rows) {
                if (standard == StandardCommand::close && key == "w") {
                    return standardCommands_.push_back(*standard);
                }
                if (!standard && row.enabled && row.keyEquivalent == key) {
                    const auto action = row.action; // it may install other menus
                    return action();
                }
            }
        }
    }

    [[nodiscard]] const std::vector<ApplicationSubmenu>& menus() const { return menus_; }

    [[nodiscard]] LayoutDirection direction() const { return direction_; }

    [[nodiscard]] int installCount() const { return installCount_; }

    [[nodiscard]] const std::vector<StandardCommand>& standardCommands() const { return standardCommands_; }

    Journal* journal = nullptr; ///< none: nothing is recorded

private:
    std::vector<ApplicationSubmenu> menus_;
    std::vector<StandardCommand> standardCommands_;
    LayoutDirection direction_ = LayoutDirection::leftToRight;
    int installCount_ = 0;
};

} // namespace quillane::fakes
