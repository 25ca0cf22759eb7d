// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardManager.hpp"

#include "core/clipboard/EntryDates.hpp"
#include "core/localization/Texts.hpp"

#include <algorithm>
#include <chrono>
#include <string>
#include <unordered_set>
#include <utility>

namespace quillane {

namespace {

namespace texts = core::texts;
using namespace std::chrono_literals;
using Outcome = HistoryStorage::Outcome;

constexpr auto pollInterval = 500ms;
constexpr auto saveDelay = 250ms;     // after the last change
constexpr auto longestDelay = 2500ms; // after the first one, so that the disk has it within three seconds
constexpr auto betweenSaves = 10s;    // while they fail
constexpr auto rereadDelay = 100ms;
constexpr int mostRereads = 5;
constexpr auto betweenReadings = 10s;                                    // of a saved history that cannot be read
constexpr HotKey shortcut{9, core::flags::command | core::flags::shift}; // V

core::ClipboardOptions storedOptions(const core::UserDefaults& defaults) {
    const auto data = defaults.data(core::clipboardOptionsKey);
    return data ? core::decodeClipboardOptions(**data).value_or(core::ClipboardOptions()) : core::ClipboardOptions();
}

/// Adds what was recorded before a history could be read to it, without what was cleared meanwhile. The entries whose
/// pin has changed.
std::vector<core::Uuid> mergeLater(core::ClipboardHistory& read, const core::ClipboardHistory& later,
                                   std::optional<core::ClipboardHistory::Clearing> cleared,
                                   const core::ClipboardOptions& options) {
    if (cleared) {
        read.clear(*cleared);
    }
    auto changedPins = read.merge(later);
    read.trim(options);
    return changedPins;
}

} // namespace

ClipboardManager::ClipboardManager(ClipboardServices services)
    : services_(std::move(services)),
      options_(storedOptions(services_.userDefaults)),
      storage_(std::make_shared<HistoryStorage>(services_.vaultFolder, services_.secretStore)) {}

ClipboardManager::~ClipboardManager() {
    if (started_) {
        stop();
    }
}

void ClipboardManager::start() {
    started_ = true;
    notices_ = services_.pasteboard.onChanged([this] {
        noteChange();
        record();
    });
    load();
    updateCollecting();
    updateShortcut();
}

void ClipboardManager::stop() {
    started_ = false;
    timer_.cancel();
    notices_.cancel();
    services_.pasteboard.setInterest(nullptr);
    if (onClosePanel) {
        onClosePanel();
    }
    hotKey_.cancel();
    wantsHotKey_ = false;
    saveAtOnce();
    services_.vaultQueue.post([storage = storage_] { storage->close(); });
    services_.vaultQueue.wait();
}

void ClipboardManager::saveAtOnce() {
    ++lastChange_; // what is pending has nothing left to do
    ++lastSave_;
    if (ready_) {
        saveLast();
    }
    services_.vaultQueue.wait();
}

// Collecting

void ClipboardManager::poll() {
    if (noteChange()) {
        recordOnceFilled(0);
    }
}

/// Whether a copy may be recorded, and from where, is decided when the pasteboard changes hands, however late its
/// contents arrive. False when it has not.
bool ClipboardManager::noteChange() {
    const auto changeCount = services_.pasteboard.changeCount();
    if (std::exchange(revision_, changeCount) == changeCount) {
        return false;
    }
    copied_.reset();
    if (isCollecting() && ready_) {
        const auto front = services_.workspace.frontmostApplication();
        copied_ = {.foreground = front ? front->bundleID.value_or(std::string()) : std::string(),
                   .sourceName = front ? front->name : std::string(),
                   .secureInput = services_.secureInput.isEnabled(),
                   .now = services_.now()};
    }
    return true;
}

/// A program may empty the pasteboard a moment before it fills it, which is one change: what is not there yet is looked
/// for again.
void ClipboardManager::recordOnceFilled(int rereads) {
    record();
    if (copied_ && rereads < mostRereads) {
        services_.mainQueue.postAfter(rereadDelay, [this, weak = std::weak_ptr(alive_), revision = revision_, rereads] {
            if (!weak.expired() && revision == revision_) {
                recordOnceFilled(rereads + 1);
            }
        });
    }
}

/// Does nothing while the copy that was noted cannot be read.
void ClipboardManager::record() {
    if (!copied_ || services_.pasteboard.changeCount() != revision_ || services_.pasteboard.itemTypes().empty()) {
        return;
    }
    auto moment = std::exchange(copied_, std::nullopt);
    moment->now = core::EntryDates::next(history_.entries(), moment->now);
    auto entry = core::ClipboardSnapshot::capture(services_.pasteboard, options_, *moment);
    if (entry && history_.insert(std::move(*entry), options_)) {
        save();
        changes_.notify();
    }
}

void ClipboardManager::configure(Suspension suspension) {
    if (std::exchange(suspension_, suspension) == suspension) {
        return;
    }
    updateCollecting();
    updateShortcut();
    changes_.notify();
}

/// What is on the pasteboard when collecting begins anew has been copied while nothing was to be recorded.
void ClipboardManager::updateCollecting() {
    if (!started_ || std::exchange(collects_, isCollecting()) == isCollecting()) {
        return;
    }
    copied_.reset();
    timer_.cancel(); // while it is off, nothing wakes the processor for it
    if (!collects_) {
        services_.pasteboard.setInterest(nullptr);
        if (onClosePanel) {
            onClosePanel();
        }
        return;
    }
    services_.pasteboard.setInterest([this, weak = std::weak_ptr(alive_)](const core::PasteboardTypeSet& types,
                                                                          const std::optional<std::string>& source) {
        return weak.expired() || !copied_ ? std::vector<std::string_view>()
                                          : core::ClipboardSnapshot::wantedTypes(types, options_, *copied_, source);
    });
    revision_ = services_.pasteboard.changeCount();
    timer_ = services_.mainQueue.repeat(pollInterval, [this] { poll(); });
}

void ClipboardManager::setOptions(const core::ClipboardOptions& options) {
    if (options == options_) {
        return;
    }
    const bool isTurnedOff = options_.enabled && !options.enabled;
    const bool wasCollecting = collects_;
    options_ = options;
    services_.userDefaults.setObject(core::clipboardOptionsKey, core::encodeClipboardOptions(options_));
    history_.trim(options_);
    updateCollecting();
    updateShortcut();
    save();
    if (isTurnedOff && !wasCollecting && onClosePanel) {
        onClosePanel(); // it may be open while everything is paused
    }
    changes_.notify();
}

core::LocalizedText ClipboardManager::status() const {
    if (!options_.enabled) {
        return texts::clipboardHistoryOff;
    }
    if (isSuspended()) {
        return texts::clipboardHistoryPaused;
    }
    if (loading_) {
        return texts::loadingHistory;
    }
    if (hotKeyConflict_) {
        return texts::historyShortcutInUse.on(services_.desktop);
    }
    return texts::clipboardHistoryActive;
}

// The entries

void ClipboardManager::pin(const core::Uuid& id) {
    const auto& entries = history_.entries();
    const auto entry = std::ranges::find(entries, id, &core::ClipboardEntry::id);
    if (entry == entries.end() || (!entry->pinned && std::ranges::count(entries, true, &core::ClipboardEntry::pinned) >=
                                                         static_cast<std::ptrdiff_t>(maximumPins))) {
        return;
    }
    history_.togglePin(id);
    services_.vaultQueue.post([storage = storage_, id] {
        storage->invalidate(id); // the date by which the vault tells changes stays the same
    });
    save();
    changes_.notify();
}

void ClipboardManager::remove(const core::Uuid& id) {
    history_.remove(id);
    save();
    changes_.notify();
}

void ClipboardManager::clear(Clearing clearing) {
    history_.clear(clearing);
    if (!isRead_) {
        clearedUnread_ = std::max(clearing, clearedUnread_.value_or(clearing));
    }
    if (clearing == Clearing::includePins) {
        lastRecovery_.reset();
        leavesFiles_ = false;
        store([](HistoryStorage& storage) { return storage.erase(); });
    }
    save();
    changes_.notify();
}

bool ClipboardManager::copy(const core::Uuid& id, core::ClipboardSnapshot::RestoreMode mode) {
    const auto& entries = history_.entries();
    const auto entry = std::ranges::find(entries, id, &core::ClipboardEntry::id);
    if (entry == entries.end() || !core::ClipboardSnapshot::restore(*entry, services_.pasteboard, mode)) {
        return false;
    }
    history_.touch(id, core::EntryDates::next(history_.entries(), services_.now()));
    revision_ = services_.pasteboard.changeCount(); // not a copy of the user's
    copied_.reset();
    save();
    changes_.notify();
    return true;
}

// The vault

void ClipboardManager::load() {
    loading_ = !ready_;
    mayReadAgain_ = false;
    wantsToRead_ = false;
    services_.vaultQueue.post([this, weak = std::weak_ptr(alive_), storage = storage_, persist = options_.persist,
                               now = services_.now(), &mainQueue = services_.mainQueue] {
        const auto loaded = std::make_shared<HistoryStorage::Loaded>(); // shared only since tasks are copied
        if (persist) {
            *loaded = storage->load(now);
        } else if (storage->begin()) {
            loaded->outcome = Outcome::loaded;
        }
        mainQueue.post([this, weak, loaded, setAside = storage->setAside()] {
            if (!weak.expired()) {
                setAside_ = setAside;
                finishLoading(std::move(*loaded));
            }
        });
    });
}

void ClipboardManager::finishLoading(HistoryStorage::Loaded loaded) {
    if (!started_) {
        return;
    }
    if (!ready_) {
        revision_ = services_.pasteboard.changeCount(); // what has been on the pasteboard before is not recorded
    }
    loading_ = false;
    ready_ = true;
    storageError_ = loaded.outcome != Outcome::loaded;
    isRead_ = loaded.outcome == Outcome::loaded || loaded.outcome == Outcome::setAside;
    isUsedElsewhere_ = loaded.outcome == Outcome::inUse;
    leavesFiles_ = loaded.leavesFiles;
    if (isRead_) {
        adopt(std::move(loaded.history));
        save();
    } else { // what is on the disk stays as it is until it can be read
        wantsToRead_ = hasUnsaved();
        services_.mainQueue.postAfter(betweenReadings, [this, weak = std::weak_ptr(alive_)] {
            if (!weak.expired()) {
                mayReadAgain_ = true;
                if (wantsToRead_) {
                    readAgain();
                }
            }
        });
    }
    changes_.notify();
}

/// Puts what was recorded meanwhile on top of what has been read.
void ClipboardManager::adopt(core::ClipboardHistory read) {
    const auto changedPins = mergeLater(read, history_, std::exchange(clearedUnread_, std::nullopt), options_);
    history_ = std::move(read);
    for (const auto& id : changedPins) {
        services_.vaultQueue.post([storage = storage_, id] { storage->invalidate(id); });
    }
}

void ClipboardManager::readAgain() {
    if (!started_ || !ready_ || isRead_ || !options_.persist) {
        return;
    }
    if (mayReadAgain_) {
        load();
    } else {
        wantsToRead_ = true;
    }
}

std::optional<core::LocalizedText> ClipboardManager::notice() const {
    if (isUsedElsewhere()) {
        return core::LocalizedText(texts::savedHistoryInUse);
    }
    if (isUnread()) {
        return core::LocalizedText(texts::savedHistoryUnread);
    }
    if (!setAside_.empty()) {
        return core::LocalizedText(texts::historyWasSetAside);
    }
    return storageError_ ? std::optional<core::LocalizedText>(texts::cannotSaveHistory) : std::nullopt;
}

void ClipboardManager::recover(const core::SetAsideHistory& history) {
    services_.vaultQueue.post([this, weak = std::weak_ptr(alive_), storage = storage_, history, now = services_.now(),
                               &mainQueue = services_.mainQueue] {
        auto found = storage->recover(history, now);
        mainQueue.post(
            [this, weak, history, total = found.total, recovered = core::ClipboardHistory(std::move(found.entries))] {
                if (!weak.expired()) {
                    finishRecovery(history, recovered, total);
                }
            });
    });
}

void ClipboardManager::finishRecovery(const core::SetAsideHistory& history, const core::ClipboardHistory& recovered,
                                      std::size_t total) {
    if (!started_ || !isRead_ || !options_.persist) {
        return;
    }
    adopt(recovered);
    std::unordered_set<std::string> digests;
    for (const auto& entry : recovered.entries()) {
        digests.insert(entry.digest);
    }
    const auto kept = std::ranges::count_if(
        history_.entries(), [&](const core::ClipboardEntry& entry) { return digests.contains(entry.digest); });
    lastRecovery_ = {static_cast<std::size_t>(kept), total};
    store(
        [entries = history_.entries(), history, isComplete = lastRecovery_->recovered == total, now = services_.now()](
            HistoryStorage& storage) { return storage.save(entries, now) && (!isComplete || storage.erase(history)); },
        [this](bool hasFailed) {
            if (hasFailed) {
                save(); // is tried until it succeeds
            }
        });
    changes_.notify();
}

void ClipboardManager::forget(const core::SetAsideHistory& history) {
    store([history](HistoryStorage& storage) { return storage.erase(history); });
}

/// Soon after the last of several changes, and within three seconds of the first however many follow.
void ClipboardManager::save() {
    if (!ready_) {
        return; // what is on the disk is not known yet; it is saved when it has been loaded
    }
    ++lastChange_;
    saveAfter(saveDelay, &ClipboardManager::lastChange_);
    if (!std::exchange(isSaveDue_, true)) {
        saveAfter(longestDelay, &ClipboardManager::lastSave_);
    }
}

/// Unless the number has moved on by then.
void ClipboardManager::saveAfter(std::chrono::milliseconds delay, std::uint64_t ClipboardManager::*number) {
    services_.mainQueue.postAfter(delay, [this, weak = std::weak_ptr(alive_), number, current = this->*number] {
        if (!weak.expired() && this->*number == current) {
            saveNow();
        }
    });
}

void ClipboardManager::saveNow() {
    ++lastChange_; // what waits for a pause, for the end of three seconds or for a second try has nothing left to do
    ++lastSave_;
    isSaveDue_ = false;
    if (options_.persist && !isRead_) {
        readAgain(); // which saves when it has succeeded
    } else if (isSaving_) {
        savesAgain_ = true; // a disk that is slower than the copies gets the latest ones when it is done
    } else {
        isSaving_ = true;
        store([entries = history_.entries(), persist = options_.persist, now = services_.now()](
                  HistoryStorage& storage) { return persist ? storage.save(entries, now) : storage.erase(); },
              [this](bool hasFailed) { finishSaving(hasFailed); });
    }
}

void ClipboardManager::finishSaving(bool hasFailed) {
    isSaving_ = false;
    if (std::exchange(savesAgain_, false)) {
        saveNow();
    } else if (hasFailed) {
        saveAfter(betweenSaves, &ClipboardManager::lastSave_);
    }
}

/// At the end there is nothing to come back to: what could not be read before is read where it is saved.
void ClipboardManager::saveLast() {
    if (isRead_ || !options_.persist) {
        isSaving_ = false; // nobody waits for the one that is under way
        saveNow();
    } else if (hasUnsaved()) {
        services_.vaultQueue.post([storage = storage_, history = history_, cleared = clearedUnread_, options = options_,
                                   now = services_.now()] {
            auto loaded = storage->load(now);
            if (loaded.outcome != Outcome::loaded && loaded.outcome != Outcome::setAside) {
                return;
            }
            for (const auto& id : mergeLater(loaded.history, history, cleared, options)) {
                storage->invalidate(id);
            }
            static_cast<void>(storage->save(loaded.history.entries(), now)); // nobody is left to be told
        });
    }
}

/// Works on the disk, and says whether that has failed and what is set aside now.
void ClipboardManager::store(std::function<bool(HistoryStorage&)> work, std::function<void(bool hasFailed)> done) {
    services_.vaultQueue.post([this, weak = std::weak_ptr(alive_), storage = storage_, work = std::move(work),
                               done = std::move(done), &mainQueue = services_.mainQueue] {
        const bool hasFailed = !work(*storage);
        mainQueue.post([this, weak, hasFailed, done, setAside = storage->setAside()] {
            if (weak.expired() || !started_) {
                return;
            }
            if (storageError_ != hasFailed || setAside_ != setAside) {
                storageError_ = hasFailed;
                setAside_ = setAside;
                changes_.notify();
            }
            if (done) {
                done(hasFailed);
            }
        });
    });
}

// The hot key

void ClipboardManager::updateShortcut() {
    const bool wanted = started_ && options_.enabled && !suspension_.remote;
    if (std::exchange(wantsHotKey_, wanted) != wanted) {
        registerShortcut();
    }
}

void ClipboardManager::registerShortcut() {
    hotKey_.cancel();
    const bool hadConflict = std::exchange(hotKeyConflict_, false);
    if (wantsHotKey_) {
        hotKey_ = services_.hotKeys.registerHotKey(
            shortcut, [this] { togglePanel(); },
            [this] {
                hotKeyConflict_ = true;
                changes_.notify();
            });
    }
    if (hadConflict) {
        changes_.notify();
    }
}

void ClipboardManager::togglePanel() {
    if (onTogglePanel) {
        onTogglePanel();
    }
}

} // namespace quillane
