// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/direction/WritingDirection.hpp"
#include "core/localization/LocalizedText.hpp"
#include "core/permissions/MacPermission.hpp"
#include "core/power/SleepPrevention.hpp"
#include "core/preferences/FeatureOptions.hpp"
#include "core/preferences/UserDefaults.hpp"
#include "core/settings/SettingsPage.hpp"

#include <QObject>

#include <functional>
#include <optional>
#include <set>
#include <string>

namespace quillane {

/// What the menu and the settings window show and change: the feature options, which live here from start-up on, and a
/// mirror of the runtime state, which the application delegate keeps up to date. Main thread.
class SettingsModel : public QObject {
    Q_OBJECT

public:
    /// The runtime state, as of the last refresh.
    struct Runtime {
        bool accessibilityGranted = false;
        bool inputMonitoringGranted = false;
        bool keyboardAvailable = true; ///< false where no program can observe the keyboard
        bool statusItemShown = true;   ///< false once a desktop turns out to have no place for the status item
        bool monitorRunning = false;
        bool keyboardEventsObserved = false; ///< a key event has arrived since the monitor started
        bool screenSharingSuspended = false;
        bool inputIsRTL = false;
        std::string inputName;
        bool keepAwakeActive = false;
        bool keepAwakeFailed = false;
        core::LocalizedText keepAwakeStatus;
        core::LocalizedText runtimeStatus; ///< the status row of the menu

        bool operator==(const Runtime&) const = default;
    };

    SettingsModel(core::UserDefaults& defaults, core::SleepAssertionClient& sleepAssertions);

    [[nodiscard]] const core::FeatureOptions& options() const { return options_; }

    /// Saves the options and calls `optionsChanged`.
    void setOptions(const core::FeatureOptions& options);

    /// Whether left Option with right Shift fixes text that was typed in the wrong layout.
    [[nodiscard]] bool fixesWrongLayout() const { return fixesWrongLayout_; }

    /// Saves the choice and calls `optionsChanged`.
    void setFixesWrongLayout(bool on);

    /// Whether anything that is on needs the keyboard monitor.
    [[nodiscard]] bool shouldMonitor() const {
        return options_.shouldMonitor() || (fixesWrongLayout_ && !options_.paused);
    }

    [[nodiscard]] const Runtime& runtime() const { return runtime_; }

    void setRuntime(Runtime runtime);

    /// Keeps the machine awake exactly when the options ask for it, and shows the outcome.
    void refreshKeepAwake();

    /// Lets it sleep again, whatever the options are, because the program ends.
    void endKeepAwake() { sleepPrevention_.setEnabled(false); }

    /// The outcome of the last action, for example a language switch.
    [[nodiscard]] const core::LocalizedText& lastAction() const { return lastAction_; }

    void setLastAction(core::LocalizedText text);

    /// What the user can do about the last action.
    struct Offer {
        core::LocalizedText title;
        std::function<void()> action;
    };

    /// Usually none. The next outcome removes it.
    [[nodiscard]] const std::optional<Offer>& offer() const { return offer_; }

    void offer(Offer offer);

    /// The bundle identifier of the supported application that was in front last; empty before the first.
    [[nodiscard]] const std::string& testTargetID() const { return testTargetID_; }

    void setTestTargetID(std::string bundleID);

    /// The text in the box of the testing page.
    [[nodiscard]] const std::string& testText() const { return testText_; }

    void setTestText(std::string text);

    /// The page that the settings window shows.
    [[nodiscard]] core::SettingsPage page() const { return page_; }

    void setPage(core::SettingsPage page);

    /// All permissions are granted, some keyboard feature is on and nothing suspends it.
    [[nodiscard]] bool isReady() const;

    /// A direction command would reach the application in front.
    [[nodiscard]] bool canTestDirection() const;

    /// The permissions are granted and the monitor should run, but it does not or has received nothing: the process
    /// must be restarted for the permissions to take effect. Always false where no process can observe the keyboard.
    [[nodiscard]] bool needsRelaunch() const;

    // Handlers, set by the application delegate. The three that open a page of the system's settings are absent where
    // the desktop has no such page.

    std::function<void()> openAccessibility;   ///< where the Accessibility permission is granted
    std::function<void()> openInputMonitoring; ///< where the Input Monitoring permission is granted
    std::function<void()> openKeyboard;        ///< where input sources are chosen
    std::function<void()> optionsChanged;      ///< called after the options were saved
    std::function<void()> refresh;             ///< reads the runtime state again
    std::function<void()> switchLanguage;      ///< selects the next input source

    /// Sets the direction of the paragraph at the cursor of the test target.
    std::function<void(core::WritingDirection)> testDirection;

signals:
    /// Something that a view shows has changed.
    void changed();

private:
    [[nodiscard]] std::set<core::MacPermission> granted() const;

    core::UserDefaults& defaults_;
    core::SleepPrevention sleepPrevention_;
    core::FeatureOptions options_;
    bool fixesWrongLayout_;
    Runtime runtime_;
    core::LocalizedText lastAction_;
    std::optional<Offer> offer_;
    std::string testTargetID_;
    std::string testText_;
    core::SettingsPage page_ = core::SettingsPage::general;
};

} // namespace quillane
