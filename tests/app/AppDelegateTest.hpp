// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppDelegate.hpp"
#include "core/preferences/InstallationMigration.hpp"
#include "fakes/FakeDesktop.hpp"
#include "support/OffscreenApplication.hpp"
#include "support/TemporaryFolder.hpp"

#include <QApplication>
#include <QTextEdit>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace quillane {

inline constexpr auto legacyBundleID = core::installationMigration::legacyBundleID;

/// A desktop with the agent on it, after start-up.
class AppDelegateTest : public ::testing::Test {
protected:
    AppDelegateTest() { desktop.withInputSources({fakes::english(), fakes::hebrew()}); }

    AppDelegate& launch() {
        model.emplace(defaults, desktop.sleepAssertions);
        preferences.emplace(defaults);
        desktop.platform.desktop = shownOn;
        delegate.emplace(desktop.platform, *preferences, *model,
                         AppDelegate::Environment{.version = "1.2",
                                                  .keyboardAvailable = keyboardAvailable,
                                                  .legacyBundleID = std::string(legacyBundleID),
                                                  .terminate = [this] { ++terminations; },
                                                  .applicationSupport = files.path(),
                                                  .fileExaminer = desktop.fileExaminer.examiner(),
                                                  .location = {"/Applications/Quillane.app", true}});
        delegate->applicationDidFinishLaunching();
        return *delegate;
    }

    /// Opens the testing page and clicks into its text box, as a user does.
    QTextEdit& focusTestingBox() {
        click("Quick test");
        auto* box = settingsWindow()->findChild<QTextEdit*>(QStringLiteral("box"));
        box->setFocus();
        settleWindows();
        return *box;
    }

    /// Lets windows be shown and activated.
    void settleWindows() {
        for (int round = 0; round < 10; ++round) {
            QApplication::processEvents();
            desktop.settle();
        }
    }

    void click(std::string_view title) { desktop.statusItem.click(title); }

    [[nodiscard]] std::string statusRowTitle() const { return desktop.statusItem.rows()[1].title; }

    [[nodiscard]] bool checked(std::string_view title) const { return desktop.statusItem.row(title).checked; }

    void releaseLanguageChord() {
        desktop.press(fakes::Modifier::leftOption).press(fakes::Modifier::leftShift);
        desktop.release(fakes::Modifier::leftShift).release(fakes::Modifier::leftOption).settle();
    }

    /// The settings window, once it has been shown.
    [[nodiscard]] static SettingsWindow* settingsWindow() {
        for (auto* widget : QApplication::topLevelWidgets()) {
            if (auto* window = qobject_cast<SettingsWindow*>(widget)) {
                return window;
            }
        }
        return nullptr;
    }

private:
    fakes::OffscreenApplication application_;

protected:
    live::TemporaryFolder files;
    fakes::FakeDesktop desktop;
    fakes::FakeUserDefaults& defaults = desktop.userDefaults;
    core::Desktop shownOn = core::Desktop::macOS; ///< the desktop that texts name
    bool keyboardAvailable = true;
    int terminations = 0;
    std::optional<core::AppPreferences> preferences;
    std::optional<SettingsModel> model;
    std::optional<AppDelegate> delegate;
};

} // namespace quillane
