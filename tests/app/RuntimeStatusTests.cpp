// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/RuntimeStatus.hpp"

#include "core/localization/Texts.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

namespace texts = core::texts;

RuntimeFacts running() {
    return {.canStartMonitor = true, .grantedPermissions = 2, .monitorRunning = true};
}

TEST(RuntimeStatus, ActiveWhileTheMonitorRuns) {
    EXPECT_EQ(statusRow(running()), (StatusRow{texts::shortcutsActive, "clock"}));
}

TEST(RuntimeStatus, AnOldCopyComesBeforeEverything) {
    auto facts = running();
    facts.oldCopyRunning = true;
    facts.options.paused = true;
    EXPECT_EQ(statusRow(facts).text, core::LocalizedText(texts::closeOldCopy));
}

TEST(RuntimeStatus, PausedComesBeforeMissingPermissions) {
    auto facts = running();
    facts.options.paused = true;
    facts.canStartMonitor = false;
    EXPECT_EQ(statusRow(facts), (StatusRow{texts::paused, "pause.circle"}));
}

TEST(RuntimeStatus, MissingPermissionsAreCounted) {
    auto facts = running();
    facts.canStartMonitor = false;
    facts.monitorRunning = false;
    facts.grantedPermissions = 1;
    EXPECT_EQ(statusRow(facts).text.rendered(core::AppLanguage::english), "Permissions approved: 1 of 2");
}

TEST(RuntimeStatus, SaysWhyNothingRuns) {
    auto facts = running();
    facts.monitorRunning = false;
    EXPECT_EQ(statusRow(facts).text, core::LocalizedText(texts::shortcutsCouldNotStart));
    facts.keyboardAvailable = false;
    EXPECT_EQ(statusRow(facts).text, core::LocalizedText(texts::keyboardNeedsX11));
    facts = running();
    facts.options.shiftEnglish = facts.options.languageSwitch = facts.options.writingDirection = false;
    EXPECT_EQ(statusRow(facts).text, core::LocalizedText(texts::shortcutsOff));
    facts = running();
    facts.screenSharingSuspended = true;
    EXPECT_EQ(statusRow(facts).text, core::LocalizedText(texts::suspendedForScreenSharing.on(core::Desktop::macOS)));
    facts.desktop = core::Desktop::linuxDesktop;
    EXPECT_EQ(statusRow(facts).text,
              core::LocalizedText(texts::suspendedForScreenSharing.on(core::Desktop::linuxDesktop)));
}

TEST(RuntimeStatus, TheMarkShowsPauseBeforeKeepAwake) {
    auto facts = running();
    EXPECT_EQ(statusMark(facts), StatusMark::plain);
    facts.keepAwakeActive = true;
    EXPECT_EQ(statusMark(facts), StatusMark::keepAwake);
    EXPECT_EQ(statusRow(facts).symbol, "cup.and.saucer");
    facts.options.paused = true;
    EXPECT_EQ(statusMark(facts), StatusMark::paused);
}

} // namespace
} // namespace quillane
