// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/HistoryStorage.hpp"
#include "core/clipboard/ClipboardHistory.hpp"
#include "core/clipboard/ClipboardOptions.hpp"
#include "core/clipboard/ClipboardSnapshot.hpp"
#include "core/localization/LocalizedText.hpp"
#include "core/support/Date.hpp"
#include "core/support/Lifetime.hpp"
#include "core/support/Listeners.hpp"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quillane {

struct Platform;

/// Runs the clipboard history: records copies, keeps the encrypted vault up to date, owns the hot key. Main thread.
///
///     ClipboardManager clipboard(platform, folder, clock);
///     clipboard.start();
///     clipboard.configure({.paused = false, .remote = false});
class ClipboardManager {
public:
    static constexpr std::size_t maximumPins = 200;

    using Clock = std::function<core::Date()>;

    /// The vault keeps its files in the folder. The platform must outlive the manager.
    ClipboardManager(const Platform& platform, std::filesystem::path vaultFolder, Clock clock);
    ~ClipboardManager();
    ClipboardManager(const ClipboardManager&) = delete;
    ClipboardManager& operator=(const ClipboardManager&) = delete;

    /// Call once. Begins to follow the pasteboard and loads the history; nothing is recorded until it is loaded.
    void start();

    /// At the end of the program: saves pending changes and waits for them.
    void stop();

    /// Saves pending changes and waits for it, when the desktop has already gone: touches nothing else.
    void saveAtOnce();

    /// Why the history is suspended.
    struct Suspension {
        bool paused = false; ///< everything is paused
        bool remote = false; ///< a viewer of another computer is in front, which has its own keys and clipboard

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

    /// A saved history exists that cannot be read now. It is not overwritten, and reading is tried again.
    [[nodiscard]] bool isUnread() const {
        return ready_ && options_.persist && !isRead_ && leavesFiles_ && !isUsedElsewhere_;
    }

    /// Another copy of the program writes the saved history: this one keeps its own in memory and tries to read again.
    [[nodiscard]] bool isUsedElsewhere() const { return ready_ && options_.persist && isUsedElsewhere_; }

    /// Saved histories that could not be read and were set aside, latest first.
    [[nodiscard]] const std::vector<core::SetAsideHistory>& setAside() const { return setAside_; }

    /// What the user should know about the saved history; none when all is well.
    [[nodiscard]] std::optional<core::LocalizedText> notice() const;

    /// Tries again to read a history that could not be read, at most every ten seconds.
    void readAgain();

    /// Adds what can be read of a history that was set aside. It is erased when all of it has been saved again.
    void recover(const core::SetAsideHistory& history);

    /// Erases a history that was set aside.
    void forget(const core::SetAsideHistory& history);

    struct Recovery {
        std::size_t recovered = 0; ///< entries that are in the history now
        std::size_t total = 0;     ///< number of entries of the history that was set aside
    };

    /// How the last recovery ended.
    [[nodiscard]] const std::optional<Recovery>& lastRecovery() const { return lastRecovery_; }

    /// Another program has the hot key.
    [[nodiscard]] bool hasHotKeyConflict() const { return hotKeyConflict_; }

    /// The history has been loaded.
    [[nodiscard]] bool isReady() const { return ready_; }

    /// Pins an entry or unpins it. Does not pin more than `maximumPins`.
    void pin(const core::Uuid& id);

    void remove(const core::Uuid& id);

    /// If pins are included, erases the disk and the histories that were set aside at once.
    void clear(core::ClipboardHistory::Clearing clearing);

    /// Puts an entry on the pasteboard and moves it to the top. False, with nothing changed, when it is no longer
    /// available.
    bool copy(const core::Uuid& id, core::clipboardSnapshot::RestoreMode mode);

    /// Tries once more to register the hot key.
    void registerShortcut();

    /// The user wants the panel opened, or closed if it is open.
    void togglePanel();

    std::function<void()> onTogglePanel; ///< set by ClipboardPanel
    std::function<void()> onClosePanel;  ///< the history has been turned off

    /// Anything above has changed.
    core::Subscription onChanged(std::function<void()> callback) { return changes_.subscribe(std::move(callback)); }

private:
    using Clearing = core::ClipboardHistory::Clearing;

    [[nodiscard]] bool isSuspended() const { return suspension_.paused || suspension_.remote; }

    [[nodiscard]] bool isCollecting() const { return options_.enabled && !isSuspended(); }

    void poll();
    bool noteChange();
    void recordOnceFilled(int rereads);
    void record();
    void load();
    void finishLoading(HistoryStorage::Loaded loaded);
    void adopt(core::ClipboardHistory read);
    void finishRecovery(const core::SetAsideHistory& history, const core::ClipboardHistory& recovered,
                        std::size_t total);

    /// Something needed saving before the saved history could be read.
    [[nodiscard]] bool hasUnsaved() const { return !history_.entries().empty() || clearedUnread_.has_value(); }

    void save();
    void saveAfter(std::chrono::milliseconds delay, std::uint64_t ClipboardManager::*number);
    void saveNow();
    void finishSaving(bool hasFailed);
    void saveLast();
    void store(std::function<bool(HistoryStorage&)> work, std::function<void(bool hasFailed)> done = nullptr);
    void updateCollecting();
    void updateShortcut();

    const Platform& platform_;
    Clock clock_;
    core::ClipboardOptions options_;
    core::ClipboardHistory history_;
    std::shared_ptr<HistoryStorage> storage_; ///< shared with tasks on the vault's queue, and used by them only
    std::vector<core::SetAsideHistory> setAside_;
    std::optional<Recovery> lastRecovery_;
    std::optional<Clearing> clearedUnread_; ///< what was cleared before the saved history could be read
    Suspension suspension_;
    std::int64_t revision_ = 0;                             ///< the change count that was seen last
    std::optional<core::clipboardSnapshot::Moment> copied_; ///< the moment of the copy that is to be read
    std::uint64_t lastChange_ = 0;                          ///< counts changes to save, and saves
    std::uint64_t lastSave_ = 0;                            ///< counts saves
    bool isSaveDue_ = false;                                ///< within three seconds
    bool isSaving_ = false;
    bool savesAgain_ = false; ///< when the current save has ended
    bool started_ = false;
    bool collects_ = false;
    bool loading_ = false;
    bool ready_ = false;
    bool isUsedElsewhere_ = false;
    bool isRead_ = false;      ///< the disk's contents are known and may be overwritten
    bool leavesFiles_ = false; ///< the disk holds something that could not be read
    bool mayReadAgain_ = false;
    bool wantsToRead_ = false; ///< as soon as it is allowed
    bool storageError_ = false;
    bool hotKeyConflict_ = false;
    bool enabledForHotKey_ = false;
    core::Listeners<> changes_;
    core::Lifetime lifetime_;
    core::Subscription hotKey_;
    core::Subscription timer_;
    core::Subscription notices_;
};

} // namespace quillane
