// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/ApplicationMenuRows.hpp"
#include "app/StatusMenu.hpp"
#include "core/localization/Texts.hpp"

#include <QFile>
#include <QString>

#include <gtest/gtest.h>

#include <algorithm>

namespace quillane {
namespace {

using core::AppLanguage;
using Kind = MenuRow::Kind;

StatusMenuState state(AppLanguage language = AppLanguage::english) {
    return {.language = language, .version = "1.2", .status = {core::texts::shortcutsActive, "clock"}};
}

StatusMenuActions allActions() {
    const auto action = [] {};
    return {action, action, action, action, action, action, action,
            action, action, action, action, action, action, action};
}

std::vector<std::string> titles(const std::vector<MenuRow>& rows) {
    std::vector<std::string> result;
    std::ranges::transform(rows, std::back_inserter(result), &MenuRow::title);
    return result;
}

TEST(StatusMenu, HasTheTwentyRowsInOrder) {
    EXPECT_EQ(titles(statusMenuRows(state(), allActions())),
              (std::vector<std::string>{"Quillane 1.2",
                                        "Shortcuts are active",
                                        "",
                                        "Capture Area to Clipboard…",
                                        "Clipboard history",
                                        "Quillane Share…",
                                        "Keep Mac Awake",
                                        "",
                                        "Settings",
                                        "Permissions",
                                        "Quick test",
                                        "Update settings",
                                        "Check for updates now",
                                        "",
                                        "Temporary English with Shift",
                                        "Switch language with Option + Shift",
                                        "Paragraph direction shortcuts",
                                        "",
                                        "Pause all",
                                        "Quit Quillane"}));
}

TEST(StatusMenu, HistoryRowSaysWhatHappenedToTheSavedHistory) {
    auto shown = state();
    EXPECT_EQ(statusMenuRows(shown, allActions())[4].toolTip, "");
    shown.historyNotice = core::texts::historyWasSetAside;
    EXPECT_EQ(statusMenuRows(shown, allActions())[4].toolTip,
              "The saved history could not be read. It was set aside and can be recovered in Settings.");
}

TEST(StatusMenu, StatusRowSaysWhatWasDoneLast) {
    auto shown = state(AppLanguage::hebrew);
    EXPECT_EQ(statusMenuRows(shown, allActions())[1].toolTip, "");
    shown.lastAction = core::texts::closeOpenMenu;
    EXPECT_EQ(statusMenuRows(shown, allActions())[1].toolTip, core::texts::closeOpenMenu.rendered(AppLanguage::hebrew));
}

TEST(StatusMenu, SeparatorsAreRows3And8And14And18) {
    const auto rows = statusMenuRows(state(), allActions());
    std::vector<std::size_t> separators;
    for (std::size_t index = 0; index < rows.size(); ++index) {
        if (rows[index].kind == Kind::separator) {
            separators.push_back(index + 1);
        }
    }
    EXPECT_EQ(separators, (std::vector<std::size_t>{3, 8, 14, 18}));
}

TEST(StatusMenu, SymbolsAreThoseOfTheirRows) {
    std::vector<std::string> symbols;
    std::ranges::transform(statusMenuRows(state(), allActions()), std::back_inserter(symbols), &MenuRow::symbol);
    EXPECT_EQ(symbols, (std::vector<std::string>{"",
                                                 "clock",
                                                 "",
                                                 "",
                                                 "clock.arrow.circlepath",
                                                 "square.and.arrow.up",
                                                 "cup.and.saucer",
                                                 "",
                                                 "gearshape",
                                                 "hand.raised",
                                                 "keyboard",
                                                 "arrow.down.app",
                                                 "arrow.triangle.2.circlepath",
                                                 "",
                                                 "textformat.abc",
                                                 "globe",
                                                 "paragraphsign",
                                                 "",
                                                 "pause.circle",
                                                 "power"}));
}

TEST(StatusMenu, EverySymbolHasADrawing) {
    auto symbols = statusMenuRows(state(), allActions());
    MenuRow resume;
    resume.symbol = "play.circle";
    symbols.push_back(resume);
    for (const auto& row : symbols) {
        if (!row.symbol.empty()) {
            const auto file =
                QStringLiteral(QUILLANE_RESOURCES "/symbols/%1.svg").arg(QString::fromStdString(row.symbol));
            EXPECT_TRUE(QFile::exists(file)) << row.symbol;
        }
    }
}

TEST(StatusMenu, HeaderIsDisabledWithTheApplicationIcon) {
    const auto header = statusMenuRows(state(), allActions()).front();
    EXPECT_EQ(header.kind, Kind::header);
    EXPECT_FALSE(header.enabled);
    EXPECT_EQ(header.icon, MenuRow::Icon::application);
    EXPECT_EQ(header.toolTip, "Quillane · Language and writing direction");
}

TEST(StatusMenu, ChecksMirrorTheOptions) {
    auto shown = state();
    shown.options.languageSwitch = false;
    shown.keepAwakeActive = true;
    const auto rows = statusMenuRows(shown, allActions());
    EXPECT_TRUE(rows[6].checked);
    EXPECT_TRUE(rows[14].checked);
    EXPECT_FALSE(rows[15].checked);
    EXPECT_TRUE(rows[16].checked);
    for (const auto index : {6U, 14U, 15U, 16U}) {
        EXPECT_TRUE(rows[index].checkable) << index;
    }
    EXPECT_EQ(std::ranges::count(rows, true, &MenuRow::checkable), 4);
}

TEST(StatusMenu, KeepAwakeIsCheckedWhileActiveNotWhileRequested) {
    auto shown = state();
    shown.options.keepAwake = true;
    EXPECT_FALSE(statusMenuRows(shown, allActions())[6].checked);
}

TEST(StatusMenu, KeepAwakeSaysInItsToolTipHowItStands) {
    auto shown = state();
    shown.keepAwakeStatus = core::texts::keepAwakeFailed;
    EXPECT_EQ(statusMenuRows(shown, allActions())[6].toolTip, "Could not prevent sleep. Turn off and on to retry.");
}

TEST(StatusMenu, PausedOffersToResume) {
    auto shown = state();
    shown.options.paused = true;
    const auto row = statusMenuRows(shown, allActions())[18];
    EXPECT_EQ(row.title, "Resume");
    EXPECT_EQ(row.symbol, "play.circle");
}

TEST(StatusMenu, OnlySettingsHasAKey) {
    for (const auto& row : statusMenuRows(state(), allActions())) {
        EXPECT_EQ(row.keyEquivalent, row.title == "Settings" ? "," : "") << row.title;
    }
}

TEST(StatusMenu, RowsWithoutAnActionAreDisabled) {
    for (const auto& row : statusMenuRows(state(), {})) {
        EXPECT_TRUE(row.kind == Kind::separator || !row.enabled) << row.title;
    }
}

TEST(StatusMenu, EveryTitleButTheNamesIsTranslated) {
    const auto english = titles(statusMenuRows(state(), allActions()));
    for (const auto language : {AppLanguage::hebrew, AppLanguage::arabic}) {
        const auto translated = titles(statusMenuRows(state(language), allActions()));
        for (std::size_t index = 0; index < english.size(); ++index) {
            const bool name = english[index].empty() || index == 0 || index == 5;
            EXPECT_EQ(translated[index] == english[index], name) << english[index];
        }
    }
}

TEST(StatusMenu, MirrorsInRightToLeftLanguages) {
    EXPECT_EQ(layoutDirection(AppLanguage::english), LayoutDirection::leftToRight);
    EXPECT_EQ(layoutDirection(AppLanguage::hebrew), LayoutDirection::rightToLeft);
    EXPECT_EQ(layoutDirection(AppLanguage::arabic), LayoutDirection::rightToLeft);
}

TEST(ApplicationMenu, HasThreeMenusWithTheirCommands) {
    const auto menus = applicationMenuRows(AppLanguage::english, {[] {}, [] {}, [] {}});
    ASSERT_EQ(menus.size(), 3U);
    std::vector<std::string> shown;
    for (const auto& menu : menus) {
        shown.push_back("[" + menu.title + "]");
        for (const auto& row : menu.rows) {
            shown.push_back(row.row.title);
        }
    }
    EXPECT_EQ(shown, (std::vector<std::string>{"[Quillane]", "Settings", "Quillane Share…", "Hide Quillane",
                                               "Quit Quillane", "[Edit]", "Undo", "Redo", "Cut", "Copy", "Paste",
                                               "Select All", "[Window]", "Minimize", "Close"}));
    EXPECT_EQ(menus[0].rows[0].row.keyEquivalent, ",");
    EXPECT_EQ(menus[2].role, ApplicationSubmenu::Role::windows);
}

} // namespace
} // namespace quillane
