// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "app/AppDelegate.hpp"

#include "app/ApplicationMenuRows.hpp"
#include "app/ChordSignWindow.hpp"
#include "app/StatusBarArtwork.hpp"
#include "app/StatusMenu.hpp"
#include "core/direction/DirectionTarget.hpp"
#include "core/localization/Texts.hpp"
#include "core/permissions/PermissionSetupPolicy.hpp"
#include "permissions/PermissionDragGuideView.hpp"
#include "settings/SettingsView.hpp"
#include "views/SymbolIcons.hpp"

#include <QColor>
#include <QGuiApplication>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace quillane {

namespace {

using namespace std::chrono_literals;

constexpr auto refreshInterval = 2000ms;
constexpr std::string_view lastStatusKey = "LastStatus";
constexpr auto beforeShowingPermissions = 500ms;

/// The number of refreshes within which a tray must show the item; at login both start together.
constexpr int refreshesUntilItemIsShown = 2;
constexpr int refreshesUntilItemIsShownAtLogin = 30;

} // namespace

AppDelegate::AppDelegate(const Platform& platform, core::AppPreferences& preferences, SettingsModel& model,
                         Environment environment)
    : platform_(platform),
      preferences_(preferences),
      model_(model),
      environment_(std::move(environment)),
      interfaceLanguage_(preferences),
      permissions_(platform, environment_.location),
      symbols_(*platform.systemSymbols),
      signs_(platform, preferences,
             [this] {
                 return std::make_unique<ChordSignWindow>(
                     *platform_.windowTraits,
                     [this](const std::string& name, const QColor& color) { return symbols_.icon(name, color); });
             }),
      dragGuide_(guideServices()),
      input_(*platform.inputSources, *platform.accessibility, *platform.workspace),
      monitor_(platform, input_),
      browserWaker_(*platform.accessibility, *platform.workspace),
      switcher_(*platform.inputSources, platform.desktop),
      applicationSources_(platform, [this] { return model_.options().paused || surroundings_.screenSharingSuspended; }),
      retyper_(*platform.inputSources),
      retyping_(platform, retyper_),
      direction_(
          DirectionServices{*platform.accessibility, *platform.workspace, *platform.mainQueue, *platform.userDefaults,
                            *platform.eventTap},
          [this] { return model_.canTestDirection(); },
          [this](const core::ChordOutcome& outcome) { reportChord(outcome); }),
      fileShare_(
          {.platform = platform,
           .preferences = preferences,
           .examiner = environment_.fileExaminer,
           .chooseServer = [this] { showServerAddress(); },
           .symbol = [&symbols = *platform.systemSymbols](
                         const std::string& name, const QColor& color) { return tintedSymbol(symbols, name, color); }}),
      clipboard_(platform, environment_.applicationSupport / "Quillane" / "ClipboardHistory",
                 [] { return core::dateOf(std::chrono::system_clock::now()); }),
      clipboardPanel_(clipboard_, platform),
      capture_(platform, [&preferences] { return preferences.state().language; }),
      loginItem_(*platform.loginItem, environment_.location.installed, platform.desktop),
      updater_(platform.updater.get(), *platform.windowTraits, environment_.version),
      wasPaused_(model.options().paused) {}

void AppDelegate::applicationDidFinishLaunching() {
    for (const auto& oldCopy : platform_.workspace->runningApplications(environment_.legacyBundleID)) {
        platform_.workspace->terminate(oldCopy.pid);
    }
    const bool atLogin = platform_.workspace->launchedAtLogin();
    refreshesUntilItemCheck_ = atLogin ? refreshesUntilItemIsShownAtLogin : refreshesUntilItemIsShown;
    platform_.windowTraits->setActivationPolicy(ActivationPolicy::accessory);
    createMenu();
    createApplicationMenu();
    updater_.start();
    clipboard_.start();
    wireControllers();
    observeWorkspace();
    applyOptions();
    refreshTimer_ = platform_.mainQueue->repeat(refreshInterval, [this, atLogin] {
        refreshRuntime();
        requestNextPermissionIfNeeded();
        lookForStatusItem(atLogin);
    });
    clipboardPanel_.noteFrontmostApplication(); // none was noted before the observers were there
    rememberTarget();
    applicationSources_.noteActivation();
    platform_.servicesMenu->provideShare([this](const std::vector<std::string>& urls) {
        const auto refusal = fileShare_.share(urls);
        return refusal ? std::optional(refusal->rendered(preferences_.state().language)) : std::nullopt;
    });
    showPermissionsIfNeeded(atLogin);
}

void AppDelegate::wireModel() {
    model_.optionsChanged = [this] { applyOptions(); };
    model_.refresh = [this] { refreshRuntime(); };
    model_.switchLanguage = [this] { switchLanguage(); };
    model_.testDirection = [this](core::WritingDirection direction) {
        direction_.test(direction, model_.testTargetID());
    };
    if (platform_.permissions->hasSettings(core::MacPermission::accessibility)) {
        model_.openAccessibility = [this] { permissions_.openSettings(core::MacPermission::accessibility); };
    }
    if (platform_.permissions->hasSettings(core::MacPermission::inputMonitoring)) {
        model_.openInputMonitoring = [this] { permissions_.openSettings(core::MacPermission::inputMonitoring); };
    }
    if (platform_.inputSources->hasSettings()) {
        model_.openKeyboard = [this] { platform_.inputSources->openSettings(); };
    }
}

void AppDelegate::wireControllers() {
    wireModel();
    permissions_.terminate = environment_.terminate;
    permissions_.presentGuide = [this](core::MacPermission permission) { dragGuide_.present(permission); };
    permissions_.applicationIsActive = [] { return QGuiApplication::applicationState() == Qt::ApplicationActive; };
    clipboardPanel_.onShow = [this] { makeHistoryPanel(); };
    clipboardPanel_.retyped = [this](const std::string& query) { return retyper_.retyped(query); };
    clipboardPanel_.onPasteFailed = [this](const core::LocalizedText& text) {
        report(text);
        notify(text); // the panel has closed
    };
    subscriptions_.push_back(clipboard_.onChanged([this] {
        if (settings_) {
            settings_->refresh();
        }
        if (!refreshing_) { // which ends with it
            createMenu();
        }
    }));
    subscriptions_.push_back(permissions_.onChanged([this] {
        if (!refreshing_) {
            refreshRuntime();
        }
    }));
    monitor_.onDirection = [this](core::WritingDirection direction) {
        directions_ = {direction, directions_.count + 1};
        if (isOwnTextBoxFocused()) {
            settings_->apply(direction);
        } else {
            direction_.apply(direction);
        }
    };
    monitor_.hasDirectionCommands = [this](const RunningApplication& application) {
        return direction_.serves(application);
    };
    monitor_.isOwnTextBoxFocused = [this] { return isOwnTextBoxFocused(); };
    monitor_.onInterruption = [this](core::UserInput input) {
        direction_.interrupt(input);
        retyping_.interrupt();
        applicationSources_.interrupt(input);
    };
    monitor_.onLanguageSwitch = [this] { switchLanguage(); };
    monitor_.onRetyping = [this](const KeyboardMonitor::Retyping& press) {
        direction_.cancelPending();
        using CapsLock = core::retyping::CapsLock;
        retyping_.retype({press.strokes, press.capsLock ? CapsLock::on : CapsLock::off});
    };
    retyping_.report = [this](const core::ChordOutcome& outcome) { reportChord(outcome); };
    monitor_.onDisabled = [this] {
        direction_.cancelPending();
        report(core::texts::keyboardEngineRestarted);
        refreshRuntime();
    };
    monitor_.onKeyboardActivity = [this] { publishRuntime(); };
    capture_.report = [this](const core::LocalizedText& text) { reportCapture(text); };
    capture_.offer = [this](const core::LocalizedText& title, std::function<void()> action) {
        model_.offer({title, std::move(action)});
    };
    switcher_.report = [this](const core::ChordOutcome& outcome) { reportChord(outcome); };
    subscriptions_.push_back(preferences_.onChanged([this] {
        createMenu();
        createApplicationMenu();
        if (platform_.servicesMenu->hasUserEntry() == true) {
            setFileManagerEntry(true); // in the language of now
        }
    }));
    subscriptions_.push_back(platform_.inputSources->onChanged([this] {
        applicationSources_.noteChange();
        publishRuntime();
    }));
    retyper_.start();
}

void AppDelegate::observeWorkspace() {
    subscriptions_.push_back(platform_.workspace->onDidActivateApplication([this] {
        monitor_.reset();
        direction_.cancelPending();
        retyping_.cancel();
        signs_.dismiss();
        clipboardPanel_.noteFrontmostApplication();
        rememberTarget();
        browserWaker_.noteActivation();
        refreshRuntime();
        applicationSources_.noteActivation(); // the refresh has found out what is in front
    }));
    subscriptions_.push_back(platform_.workspace->onDidReopen([this] { applicationShouldHandleReopen(); }));
    subscriptions_.push_back(platform_.workspace->onDidWake([this] {
        monitor_.stop();
        direction_.cancelPending();
        refreshRuntime(); // makes a fresh tap
    }));
}

void AppDelegate::applicationShouldHandleReopen() {
    showSettings(model_.page()); // as it was left
}

void AppDelegate::showSettings(core::SettingsPage page) {
    if (!settings_) {
        settings_ = std::make_unique<SettingsWindow>(settingsServices());
    }
    settings_->present(page);
}

bool AppDelegate::isOwnTextBoxFocused() const {
    return settings_ && settings_->isTextBoxFocused();
}

void AppDelegate::showServerAddress() {
    showSettings(core::SettingsPage::general);
    settings_->view().focusServerAddress();
}

void AppDelegate::showClipboardSettings() {
    showSettings(core::SettingsPage::clipboard);
}

void AppDelegate::showClipboard() {
    clipboardPanel_.toggle();
}

/// On first use: most of what it draws with is loaded then, too.
void AppDelegate::makeHistoryPanel() {
    historyPanel_ = std::make_unique<HistoryPanel>(HistoryPanelServices{
        .platform = platform_,
        .panel = clipboardPanel_,
        .preferences = preferences_,
        .symbol = [&symbols = *platform_.systemSymbols](
                      const std::string& name, const QColor& color) { return tintedSymbol(symbols, name, color); },
        .openSettings = [this] { showClipboardSettings(); }});
    clipboardPanel_.onShow();
}

void AppDelegate::showPermissionsIfNeeded(bool atLogin) {
    auto& defaults = *platform_.userDefaults;
    const bool relaunched = defaults.boolean(PermissionController::showPermissionsKey).value_or(false);
    defaults.removeObject(PermissionController::showPermissionsKey); // one shot: set before a relaunch for a new grant
    const bool missing = !core::PermissionSetupPolicy::canStartKeyboardMonitor(permissions_.granted());
    if (!relaunched && (!missing || atLogin)) {
        return;
    }
    platform_.mainQueue->postAfter(beforeShowingPermissions, [this, alive = lifetime_.watch()] {
        if (alive && !(settings_ && settings_->isVisible())) {
            showSettings(core::SettingsPage::permissions);
            requestNextPermissionIfNeeded();
        }
    });
}

void AppDelegate::requestNextPermissionIfNeeded() {
    if (settings_ && settings_->showsPermissions()) {
        permissions_.requestNextIfNeeded();
    }
}

SettingsServices AppDelegate::settingsServices() {
    ClipboardSettings clipboard;
    clipboard.options = [this] { return clipboard_.options(); };
    clipboard.setOptions = [this](const core::ClipboardOptions& options) { clipboard_.setOptions(options); };
    clipboard.status = [this] { return clipboard_.status(); };
    clipboard.hasStorageError = [this] { return clipboard_.hasStorageError(); };
    clipboard.isShortcutTaken = [this] { return clipboard_.hasHotKeyConflict(); };
    clipboard.retryShortcut = [this] { clipboard_.registerShortcut(); };
    clipboard.access = [this] { return platform_.pasteboard->access(); };
    clipboard.openAccessSettings = [this] { platform_.pasteboard->openAccessSettings(); };
    clipboard.isUnread = [this] { return clipboard_.isUnread(); };
    clipboard.isUsedElsewhere = [this] { return clipboard_.isUsedElsewhere(); };
    clipboard.setAside = [this] { return clipboard_.setAside(); };
    clipboard.recover = [this](const core::SetAsideHistory& history) { clipboard_.recover(history); };
    clipboard.forget = [this](const core::SetAsideHistory& history) { clipboard_.forget(history); };
    clipboard.lastRecovery = [this] { return clipboard_.lastRecovery(); };
    clipboard.clear = [this](core::ClipboardHistory::Clearing clearing) { clipboard_.clear(clearing); };
    clipboard.findApplications = [this](ApplicationCatalog::Handler handler) {
        platform_.applicationCatalog->read(std::move(handler));
    };
    return {.platform = platform_,
            .model = model_,
            .preferences = preferences_,
            .permissions = permissions_,
            .loginItem = loginItem_,
            .updater = updater_,
            .clipboard = std::move(clipboard),
            .fileManager = {.hasEntry = [this] { return platform_.servicesMenu->hasUserEntry(); },
                            .setEntry = [this](bool on) { setFileManagerEntry(on); }},
            .symbol = [this](const std::string& name, const QColor& color) { return symbols_.icon(name, color); },
            .applicationIcon = QGuiApplication::windowIcon()};
}

void AppDelegate::setFileManagerEntry(bool on) {
    platform_.servicesMenu->setUserEntry(
        on ? std::optional(core::LocalizedText(core::texts::shareWithQuillane).rendered(preferences_.state().language))
           : std::nullopt);
}

PermissionGuideServices AppDelegate::guideServices() {
    return {
        .platform = platform_,
        .permissions = permissions_,
        .screens = currentScreens,
        .makePanel = [this]() -> std::unique_ptr<PermissionGuidePanel> {
            return std::make_unique<PermissionDragGuideWindow>(PermissionCardServices{
                .permissions = permissions_,
                .preferences = preferences_,
                .windowTraits = *platform_.windowTraits,
                .symbol = [this](const std::string& name, const QColor& color) { return symbols_.icon(name, color); },
                .applicationIcon = QGuiApplication::windowIcon()});
        }};
}

void AppDelegate::applicationWillTerminate() {
    for (auto* handler : {&model_.optionsChanged, &model_.refresh, &model_.switchLanguage, &model_.openAccessibility,
                          &model_.openInputMonitoring, &model_.openKeyboard}) {
        *handler = nullptr;
    }
    model_.testDirection = nullptr;
    lifetime_.end();
    monitor_.stop();
    direction_.cancelPending();
    retyping_.cancel();
    settings_.reset();
    historyPanel_.reset();
    signs_.end();
    dragGuide_.dismiss();
    clipboard_.stop();
    platform_.servicesMenu->provideShare(nullptr);
    fileShare_.cancelAll();
    model_.endKeepAwake();
    refreshTimer_.cancel();
    subscriptions_.clear();
}

void AppDelegate::createApplicationMenu() {
    const auto language = preferences_.state().language;
    platform_.applicationMenu->install(
        applicationMenuRows(language, {.showSettings = [this] { showSettings(core::SettingsPage::general); },
                                       .shareFile = [this] { fileShare_.choose(); },
                                       .quit = environment_.terminate}),
        layoutDirection(language));
}

void AppDelegate::createMenu() {
    const auto language = preferences_.state().language;
    const auto facts = runtimeFacts();
    StatusMenuState state{.language = language,
                          .desktop = platform_.desktop,
                          .version = environment_.version,
                          .options = model_.options(),
                          .keepAwakeActive = model_.runtime().keepAwakeActive,
                          .keepAwakeStatus = model_.runtime().keepAwakeStatus,
                          .captureMeans = platform_.areaCapture->means(),
                          .accessibilityGranted = permissions_.granted().contains(core::MacPermission::accessibility),
                          .historyNotice = clipboard_.notice(),
                          .lastAction = model_.lastAction(),
                          .status = checked_ ? statusRow(facts) : StatusRow{core::texts::checkingPermissions, "clock"}};
    if (state == shownMenu_) {
        return;
    }
    platform_.statusItem->setMenu(statusMenuRows(state, menuActions()), layoutDirection(language));
    shownMenu_ = std::move(state);
    updateStatusWordmark();
}

void AppDelegate::updateStatusWordmark() {
    const auto mark = statusMark(runtimeFacts());
    platform_.statusItem->setImage(statusBarArtwork::image(mark),
                                   statusMarkLabel(mark).rendered(preferences_.state().language));
}

StatusMenuActions AppDelegate::menuActions() {
    StatusMenuActions actions;
    actions.toggleKeepAwake = [this] { toggle(&core::FeatureOptions::keepAwake); };
    actions.showClipboard = [this] { showClipboard(); };
    if (platform_.areaCapture->means() != AreaCapture::Means::none) {
        actions.captureArea = [this] { startCapture(); };
    }
    actions.shareFile = [this] { fileShare_.choose(); };
    actions.showSettings = [this] { showSettings(core::SettingsPage::general); };
    actions.showPermissions = [this] { showSettings(core::SettingsPage::permissions); };
    actions.showTesting = [this] { showSettings(core::SettingsPage::testing); };
    actions.showUpdates = [this] { showSettings(core::SettingsPage::updates); };
    if (updater_.updatesItself()) {
        actions.checkForUpdates = [this] { updater_.checkNow(); };
    }
    actions.toggleShift = [this] { toggle(&core::FeatureOptions::shiftEnglish); };
    actions.toggleLanguage = [this] { toggle(&core::FeatureOptions::languageSwitch); };
    actions.toggleDirection = [this] { toggle(&core::FeatureOptions::writingDirection); };
    actions.togglePause = [this] { toggle(&core::FeatureOptions::paused); };
    actions.quit = environment_.terminate;
    return actions;
}

void AppDelegate::startCapture() {
    direction_.cancelPending(); // a menu that opens now would be in the picture
    signs_.dismiss();           // likewise
    capture_.start();
}

void AppDelegate::toggle(bool core::FeatureOptions::*option) {
    auto options = model_.options();
    options.*option = !(options.*option);
    model_.setOptions(options);
}

void AppDelegate::switchLanguage() {
    direction_.cancelPending();
    switcher_.switchToNext();
    publishRuntime();
}

void AppDelegate::rememberTarget() {
    const auto front = direction_.target();
    const auto targets = core::directionTestTargets(platform_.desktop);
    if (front && std::ranges::find(targets, *front, &core::DirectionTestTarget::bundleID) != targets.end()) {
        model_.setTestTargetID(*front);
    }
}

void AppDelegate::report(const core::LocalizedText& text) {
    model_.setLastAction(text);
    platform_.userDefaults->note(lastStatusKey, text.rendered(preferences_.state().language));
    createMenu();
}

void AppDelegate::reportChord(const core::ChordOutcome& outcome) {
    report(outcome.message);
    signs_.show(outcome);
}

void AppDelegate::reportCapture(const core::LocalizedText& text) {
    report(text);
    const std::array begun{core::LocalizedText(core::texts::selectAreaToCapture),
                           core::LocalizedText(core::texts::selectAreaOrCheckShortcut)};
    if (std::ranges::find(begun, text) == begun.end()) { // otherwise the menu would close and nothing be seen
        notify(text);
    }
}

void AppDelegate::notify(const core::LocalizedText& text) {
    const auto language = preferences_.state().language;
    platform_.statusItem->notify(core::LocalizedText(core::texts::quillane).rendered(language), text.rendered(language),
                                 nullptr); // the settings show the last action
}

} // namespace quillane
