// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/localization/Texts.hpp"
#include "fakes/FakeDesktop.hpp"
#include "settings/SettingsWindow.hpp"
#include "support/OffscreenApplication.hpp"
#include "views/InterfaceLanguage.hpp"

#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QPalette>
#include <QPushButton>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillane {

/// The settings window over real models, with the desktop faked and drawn off the screen.
class SettingsTest : public ::testing::Test {
protected:
    /// On a screen that shows the longest page as a whole, or on one of another size.
    explicit SettingsTest(const QSize& screen = {1600, 4000}) : application_(screen) {
        preferences.choose(core::AppLanguage::english);
        model.refresh = [this] {
            permissions.refresh();
            loginItem.refresh();
        };
        model.switchLanguage = [] {};
        model.openAccessibility = [this] { permissions.openSettings(core::MacPermission::accessibility); };
        model.openInputMonitoring = [this] { permissions.openSettings(core::MacPermission::inputMonitoring); };
        model.openKeyboard = [this] { desktop.inputSources.openSettings(); };
        desktop.applicationCatalog.applications = {{"com.example.mail", "Mail"},
                                                   {"com.example.editor", "Editor", true}};
    }

    SettingsWindow& window() {
        if (!window_) {
            window_ = std::make_unique<SettingsWindow>(services());
        }
        return *window_;
    }

    /// As when the program is started again.
    void closeForever() { window_.reset(); }

    SettingsWindow& present(core::SettingsPage page) {
        window().present(page);
        settle();
        return window();
    }

    [[nodiscard]] virtual SettingsServices services() {
        ClipboardSettings clipboard;
        clipboard.options = [this] { return clipboardOptions; };
        clipboard.setOptions = [this](const core::ClipboardOptions& options) { clipboardOptions = options; };
        clipboard.status = [] { return core::texts::clipboardHistoryActive; };
        clipboard.hasStorageError = [this] { return historyIsUnsaved; };
        clipboard.isShortcutTaken = [this] { return shortcutTaken; };
        clipboard.retryShortcut = [this] { ++retries; };
        clipboard.access = [this] { return pasteboardAccess; };
        clipboard.openAccessSettings = [this] { ++accessSettingsOpened; };
        clipboard.isUnread = [this] { return historyIsUnread; };
        clipboard.isUsedElsewhere = [this] { return historyIsUsedElsewhere; };
        clipboard.setAside = [this] { return setAside; };
        clipboard.recover = [this](const core::SetAsideHistory& history) { recovered.push_back(history); };
        clipboard.forget = [this](const core::SetAsideHistory& history) { std::erase(setAside, history); };
        clipboard.lastRecovery = [this] { return lastRecovery; };
        clipboard.clear = [this](core::ClipboardHistory::Clearing clearing) { clearings.push_back(clearing); };
        clipboard.findApplications = [this](const ApplicationCatalog::Handler& handler) {
            desktop.applicationCatalog.read(handler);
        };
        desktop.platform.desktop = shownOn;
        return {.platform = desktop.platform,
                .model = model,
                .preferences = preferences,
                .permissions = permissions,
                .loginItem = loginItem,
                .updater = updater,
                .clipboard = std::move(clipboard),
                .fileManager = {.hasEntry = [this] { return desktop.servicesMenu.hasUserEntry(); },
                                .setEntry =
                                    [this](bool on) {
                                        desktop.servicesMenu.setUserEntry(on ? std::optional<std::string>("Share")
                                                                             : std::nullopt);
                                    }},
                .symbol = {},
                .applicationIcon = {}};
    }

    /// Lets nested layouts settle: each level notifies the next one in a separate event.
    void settle() {
        for (int round = 0; round < 10; ++round) {
            QApplication::processEvents();
            desktop.settle();
        }
    }

    /// The widget of that kind and name on the window.
    template <typename Widget>
    [[nodiscard]] Widget& find(const char* name) {
        auto* found = window().findChild<Widget*>(QLatin1String(name));
        if (found == nullptr) {
            throw std::logic_error(std::string("no widget ") + name);
        }
        return *found;
    }

    /// Whether a label with this text can be seen.
    [[nodiscard]] bool shows(const QString& text) {
        const auto labels = window().findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(),
                           [&](const QLabel* label) { return label->isVisible() && label->text() == text; });
    }

    /// The button with this text that can be seen.
    [[nodiscard]] QPushButton& buttonNamed(const char* text) {
        for (auto* button : window().findChildren<QPushButton*>()) {
            if (button->isVisible() && button->text() == QLatin1String(text)) {
                return *button;
            }
        }
        throw std::logic_error(std::string("no button ") + text);
    }

    static void useDark(bool dark) {
        QPalette palette;
        palette.setColor(QPalette::Window, dark ? QColor(30, 31, 34) : QColor(240, 240, 240));
        palette.setColor(QPalette::WindowText, dark ? Qt::white : Qt::black);
        QApplication::setPalette(palette);
        QApplication::processEvents();
    }

private:
    fakes::OffscreenApplication application_;

protected:
    fakes::FakeDesktop desktop;
    core::AppPreferences preferences{desktop.userDefaults};
    InterfaceLanguage interface { preferences };
    SettingsModel model{desktop.userDefaults, desktop.sleepAssertions};
    PermissionController permissions{desktop.platform, {"/Applications/Quillane.app", true}};
    LoginItemController loginItem{desktop.loginItem, true};
    AppUpdater updater{&desktop.updater, desktop.windowTraits, "1.2"};
    core::Desktop shownOn = core::Desktop::macOS; ///< the desktop that texts name
    core::ClipboardOptions clipboardOptions;
    bool shortcutTaken = false;
    bool historyIsUnsaved = false;
    bool historyIsUnread = false;
    bool historyIsUsedElsewhere = false;
    std::vector<core::SetAsideHistory> setAside;
    std::vector<core::SetAsideHistory> recovered; ///< in the order of asking
    std::optional<ClipboardManager::Recovery> lastRecovery;
    int retries = 0;
    PasteboardAccess pasteboardAccess = PasteboardAccess::allowed;
    int accessSettingsOpened = 0;
    std::vector<core::ClipboardHistory::Clearing> clearings;

private:
    std::unique_ptr<SettingsWindow> window_;
};

} // namespace quillane
