// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/ChordSigns.hpp"
#include "app/Doctor.hpp"
#include "app/RuntimeStatus.hpp"
#include "app/StatusMenu.hpp"
#include "app/StatusReport.hpp"
#include "clipboard/ClipboardManager.hpp"
#include "clipboard/ClipboardPanel.hpp"
#include "clipboard/ClipboardScreenCapture.hpp"
#include "clipboard/panel/HistoryPanel.hpp"
#include "core/preferences/AppPreferences.hpp"
#include "core/support/Lifetime.hpp"
#include "direction/BrowserWaking.hpp"
#include "direction/DirectionCommands.hpp"
#include "fileshare/FileShareService.hpp"
#include "keyboard/ApplicationSources.hpp"
#include "keyboard/InputSourceSwitcher.hpp"
#include "keyboard/KeyboardMonitor.hpp"
#include "keyboard/RTLInput.hpp"
#include "keyboard/Retyper.hpp"
#include "keyboard/RetypingCommand.hpp"
#include "permissions/PermissionController.hpp"
#include "permissions/PermissionDragGuide.hpp"
#include "platform/AgentControl.hpp"
#include "platform/Platform.hpp"
#include "settings/SettingsModel.hpp"
#include "settings/SettingsWindow.hpp"
#include "system/AppUpdater.hpp"
#include "system/LoginItemController.hpp"
#include "views/InterfaceLanguage.hpp"
#include "views/SymbolIcons.hpp"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillane {

/// The root of the agent. Owns every long-lived controller, wires them together, builds the status menu and decides in
/// `refreshRuntime` what runs. Main thread.
class AppDelegate {
public:
    struct Environment {
        std::string version;                      ///< shown in the menu
        bool keyboardAvailable = true;            ///< false where the desktop cannot observe keys (Wayland)
        std::string legacyBundleID;               ///< of the previous edition, which must not run beside this one
        std::function<void()> terminate;          ///< ends the event loop
        std::filesystem::path applicationSupport; ///< where applications keep the user's data
        core::FileExaminer fileExaminer;          ///< asks the disk about files that are to be shared
        core::ApplicationLocation location;
        std::filesystem::path home;
    };

    /// All of these must outlive it.
    AppDelegate(const Platform& platform, core::AppPreferences& preferences, SettingsModel& model,
                Environment environment);

    /// Start-up, once, when the event loop is about to run.
    void applicationDidFinishLaunching();

    /// The program was opened again while it runs.
    void applicationShouldHandleReopen();

    /// Stops everything that runs; called once, after the event loop has ended. Nothing can be started again.
    void applicationWillTerminate();

    /// Saves pending copies and waits for it, at an end at which nothing else can be done.
    void saveHistory() { clipboard_.saveAtOnce(); }

    /// Answers a later start of the program.
    [[nodiscard]] ControlReply handleControlRequest(const ControlRequest& request);

    [[nodiscard]] StatusReport statusReport() const;

    /// Waits for other programs, two seconds at most.
    [[nodiscard]] core::DiagnosisFacts diagnosisFacts();

    [[nodiscard]] ClipboardPanel& clipboardPanel() { return clipboardPanel_; }

private:
    /// What a refresh has found on the desktop.
    struct Surroundings {
        bool oldCopyRunning = false;
        bool screenSharingSuspended = false;
    };

    void wireModel();
    void wireControllers();
    void observeWorkspace();
    void createMenu(); ///< of the status item; does nothing while it would look the same
    void createApplicationMenu();
    void updateStatusWordmark();
    [[nodiscard]] StatusMenuActions menuActions();
    void applyOptions();

    /// Decides what runs, in this order: permissions and login item, other applications, the keyboard monitor, the
    /// model, the clipboard history, Keep Awake, the status item.
    void refreshRuntime();
    void lookAround();
    void runMonitor();
    void publishRuntime(); ///< to the model, between two refreshes too
    [[nodiscard]] RuntimeFacts runtimeFacts() const;

    void showSettings(core::SettingsPage page);
    [[nodiscard]] bool isOwnTextBoxFocused() const;
    void showServerAddress();
    void showClipboardSettings();
    void showClipboard();
    void startCapture();
    void makeHistoryPanel();
    void showPermissionsIfNeeded(bool atLogin);
    void lookForStatusItem(bool atLogin);
    void announceStart(bool atLogin);
    void requestNextPermissionIfNeeded();
    [[nodiscard]] SettingsServices settingsServices();
    void setFileManagerEntry(bool on);
    [[nodiscard]] PermissionGuideServices guideServices();

    void toggle(bool core::FeatureOptions::*option);
    void switchLanguage();
    void rememberTarget();
    void reportCapture(const core::LocalizedText& text);
    [[nodiscard]] ControlReply capture();
    [[nodiscard]] ControlReply share(const std::vector<std::string>& urls);
    void report(const core::LocalizedText& text);
    void reportChord(const core::ChordOutcome& outcome);
    void notify(const core::LocalizedText& text);

    const Platform& platform_;
    core::AppPreferences& preferences_;
    SettingsModel& model_;
    Environment environment_;
    InterfaceLanguage interfaceLanguage_; ///< before everything that shows texts and follows the language after it

    PermissionController permissions_;
    SymbolIcons symbols_; ///< for the windows
    ChordSigns signs_;
    PermissionDragGuide dragGuide_;
    RTLInput input_;
    KeyboardMonitor monitor_;
    BrowserWaker browserWaker_;
    InputSourceSwitcher switcher_;
    ApplicationSources applicationSources_;
    Retyper retyper_;
    RetypingCommand retyping_;
    DirectionCommands direction_;
    FileShareService fileShare_;
    ClipboardManager clipboard_;
    ClipboardPanel clipboardPanel_;
    ClipboardScreenCapture capture_;
    LoginItemController loginItem_;
    AppUpdater updater_;
    bool wasPaused_; ///< when the options were applied last
    Surroundings surroundings_;
    bool refreshing_ = false; ///< `refreshRuntime` is running and picks up changes meanwhile

    DirectionDeliveries directions_;
    std::optional<StatusMenuState> shownMenu_; ///< what the status item shows now; redrawn only when it differs
    int refreshesUntilItemCheck_ = 0;          ///< until the check whether the status item is shown
    bool checked_ =
        false; ///< the permissions have been read; until then the status row says that they are being checked
    core::Lifetime lifetime_;
    std::unique_ptr<SettingsWindow> settings_;      ///< made on first use, then kept
    std::unique_ptr<HistoryPanel> historyPanel_;    ///< likewise
    std::vector<core::Subscription> subscriptions_; // last: dropped before what their callbacks use
    core::Subscription refreshTimer_;
};

} // namespace quillane
