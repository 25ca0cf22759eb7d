// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/clipboard/ClipboardHistory.hpp"
#include "core/clipboard/ClipboardOptions.hpp"
#include "core/clipboard/ClipboardSnapshot.hpp"
#include "core/localization/Desktop.hpp"
#include "core/localization/LocalizedText.hpp"
#include "core/preferences/UserDefaults.hpp"
#include "core/support/Listeners.hpp"
#include "core/support/SecretStore.hpp"
#include "platform/HotKeys.hpp"
#include "platform/MainQueue.hpp"
#include "platform/Pasteboard.hpp"
#include "platform/SecureInput.hpp"
#include "platform/SerialQueue.hpp"
#include "platform/Workspace.hpp"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace quillane {

/// What the clipboard history needs of the desktop, borrowed.
struct ClipboardServices {
    core::Desktop desktop{}; ///< what the texts speak of, and the keys that they name
    MainQueue& mainQueue;
    core::UserDefaults& userDefaults;
    Workspace& workspace;
    Pasteboard& pasteboard;
    HotKeys& hotKeys;
    SecureInput& secureInput;
    core::SecretStore& secretStore; ///< used on the vault's queue only
    SerialQueue& vaultQueue;        ///< for everything that the vault does
    std::filesystem::path vaultFolder;
    std::function<core::Date()> now;
};

/// Runs the clipboard history: records copies, keeps the encrypted vault up to date, owns the hot key. Main thread.
///
///     ClipboardManager clipboard({…});
///     clipboard.start();
///     clipboard.configure({.paused = false, .remote = false});
class ClipboardManager {
public:
    static constexpr std::size_t maximumPins = 200;

    explicit ClipboardManager(ClipboardServices services);
    ~ClipboardManager();
    ClipboardManager(const ClipboardManager&) = delete;
    ClipboardManager& operator=(const ClipboardManager&) = delete;

    /// Once: begins to follow the pasteboard and loads the history. Until it is there nothing is recorded.
    void start();

    /// At the end of the program: saves what is to be saved, and waits for it.
    void stop();

    /// Why the history is suspended.
    struct Suspension {
        bool paused = false; ///< everything is paused
        bool remote = false; ///< the computer in front is another one, which has keys and a clipboard of its own

        bool operator==(const Suspension&) const = default;
    };

    void configure(Suspension suspension);

    [[nodiscard]] const core::ClipboardOptions& options() const { return options_; }

    /// Stores the options, trims the history by them and saves it.
    void setOptions(const core::ClipboardOptions& options);

    [[nodiscard]] const core::ClipboardHistory& history() const { return history_; }

    /// For the menu and the settings.
    [[nodiscard]] core::LocalizedText status() const;

    /// The history could not be loaded or saved: it is in memory only.
    [[nodiscard]] bool hasStorageError() const { return storageError_; }

    /// Another program has the hot key.
    [[nodiscard]] bool hasHotKeyConflict() const { return hotKeyConflict_; }

    /// The history has been loaded.
    [[nodiscard]] bool isReady() const { return ready_; }

    /// Pins an entry or unpins it. One more than `maximumPins` is not pinned.
    void pin(const core::Uuid& id);

    void remove(const core::Uuid& id);
    void clear(core::ClipboardHistory::Clearing clearing);

    /// Puts an entry on the pasteboard and moves it to the top. False, with nothing changed, when it cannot be had any
    /// more.
    bool copy(const core::Uuid& id, core::ClipboardSnapshot::RestoreMode mode);

    /// Tries once more to register the hot key.
    void registerShortcut();

    /// The user wants the panel opened, or closed when it is open.
    void togglePanel();

    std::function<void()> onTogglePanel; ///< set by ClipboardPanel
    std::function<void()> onClosePanel;  ///< the history is off from now on

    /// Anything above has changed.
    core::Subscription onChanged(std::function<void()> callback) { return changes_.subscribe(std::move(callback)); }

private:
    struct Vault;  // what the vault's queue works on
    struct Loaded; // what it has loaded

    [[nodiscard]] bool isSuspended() const { return suspension_.paused || suspension_.remote; }

    [[nodiscard]] bool isCollecting() const { return options_.enabled && !isSuspended(); }

    void poll();
    bool noteChange();
    void recordOnceFilled(int rereads);
    void record();
    void load();
    void finishLoading(Loaded loaded);
    void save();
    void saveNow();
    void updateCollecting();
    void updateShortcut();
    void setStorageError(bool error);

    ClipboardServices services_;
    core::ClipboardOptions options_;
    core::ClipboardHistory history_;
    std::shared_ptr<Vault> vault_; ///< shared with tasks on the vault's queue, and used by them only
    Suspension suspension_;
    std::int64_t revision_ = 0;                             ///< the change count that was seen last
    std::optional<core::ClipboardSnapshot::Moment> copied_; ///< when the copy that is to be read was made
    std::uint64_t saveWork_ = 0;
    bool started_ = false;
    bool collects_ = false;
    bool loading_ = false;
    bool ready_ = false;
    bool storageError_ = false;
    bool hotKeyConflict_ = false;
    bool wantsHotKey_ = false;
    core::Listeners<> changes_;
    std::shared_ptr<void> alive_ = std::make_shared<int>(); ///< for what comes back after this has gone
    core::Subscription hotKey_;
    core::Subscription timer_;
    core::Subscription notices_;
};

} // namespace quillane
