// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/StatusMenu.hpp"

#include "core/localization/Texts.hpp"

#include <array>
#include <utility>

namespace quillane {

namespace texts = core::texts;

namespace {

MenuRow separator() {
    MenuRow row;
    row.kind = MenuRow::Kind::separator;
    return row;
}

/// What the capture command does, or what it is missing.
core::LocalizedText captureDescription(const StatusMenuState& state) {
    if (state.captureMeans == AreaCapture::Means::none) {
        return texts::areaCaptureNeedsX11;
    }
    if (!state.accessibilityGranted) {
        return texts::areaCaptureNeedsAccessibility;
    }
    return state.captureMeans == AreaCapture::Means::systemShortcut ? texts::captureAreaLikeShortcut
                                                                    : texts::selectAreaToCapture;
}

} // namespace

std::vector<MenuRow> statusMenuRows(const StatusMenuState& state, const StatusMenuActions& actions) {
    const auto text = [&](const core::LocalizedText& title) { return title.rendered(state.language); };

    MenuRow header;
    header.kind = MenuRow::Kind::header;
    header.title = text(texts::quillane) + " " + state.version;
    header.icon = MenuRow::Icon::application;
    header.toolTip = text(texts::languageAndWritingDirection);
    header.enabled = false;

    const auto item = [&](const core::LocalizedText& title, std::string_view symbol,
                          const std::function<void()>& action) {
        MenuRow row;
        row.title = text(title);
        row.icon = symbol.empty() ? MenuRow::Icon::none : MenuRow::Icon::symbol;
        row.symbol = symbol;
        row.enabled = action != nullptr;
        row.action = action;
        return row;
    };
    const auto toggle = [&](const core::LocalizedText& title, std::string_view symbol,
                            const std::function<void()>& action, bool on) {
        auto row = item(title, symbol, action);
        row.checkable = true;
        row.checked = on;
        return row;
    };
    const auto addScreenCaptureItem = [&](std::vector<MenuRow>& rows) {
        auto capture = item(texts::captureAreaToClipboard, "", actions.captureArea);
        capture.toolTip = text(captureDescription(state));
        rows.push_back(std::move(capture));
    };
    auto keepAwake =
        toggle(texts::keepMacAwake.on(state.desktop), "cup.and.saucer", actions.toggleKeepAwake, state.keepAwakeActive);
    keepAwake.toolTip = text(state.keepAwakeStatus);
    auto history = item(texts::clipboardHistory, "clock.arrow.circlepath", actions.showClipboard);
    history.toolTip = state.historyNotice ? text(*state.historyNotice) : std::string();
    auto settings = item(texts::settings, "gearshape", actions.showSettings);
    settings.keyEquivalent = ",";

    auto status = item(state.status.text, state.status.symbol, nullptr);
    status.toolTip = text(state.lastAction);

    const bool paused = state.options.paused;
    std::vector<MenuRow> rows{header, status, separator()};
    addScreenCaptureItem(rows);
    const std::array rest{
        history,
        item(texts::quillaneShare, "square.and.arrow.up", actions.shareFile),
        keepAwake,
        separator(),
        settings,
        item(texts::permissions, "hand.raised", actions.showPermissions),
        item(texts::quickTest, "keyboard", actions.showTesting),
        item(texts::updateSettings, "arrow.down.app", actions.showUpdates),
        item(texts::checkForUpdatesNow, "arrow.triangle.2.circlepath", actions.checkForUpdates),
        separator(),
        toggle(texts::temporaryEnglish, "textformat.abc", actions.toggleShift, state.options.shiftEnglish),
        toggle(texts::switchLanguage.on(state.desktop), "globe", actions.toggleLanguage, state.options.languageSwitch),
        toggle(texts::paragraphDirectionShortcuts, "paragraphsign", actions.toggleDirection,
               state.options.writingDirection),
        separator(),
        paused ? item(texts::resume, "play.circle", actions.togglePause)
               : item(texts::pauseAll, "pause.circle", actions.togglePause),
        item(texts::quitQuillane, "power", actions.quit),
    };
    rows.insert(rows.end(), rest.begin(), rest.end());
    return rows;
}

LayoutDirection layoutDirection(core::AppLanguage language) {
    return core::isRTL(language) ? LayoutDirection::rightToLeft : LayoutDirection::leftToRight;
}

} // namespace quillane
