// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardManager.hpp"

#include "core/localization/Texts.hpp"
#include "platform/Platform.hpp"

#include <algorithm>
#include <chrono>
#include <string>
#include <unordered_set>
#include <utility>

// When the history is read and saved, and what becomes of one that cannot be.

namespace quillane {

namespace {

namespace texts = core::texts;
using namespace std::chrono_literals;
using Outcome = HistoryStorage::Outcome;

constexpr auto saveDelay = 250ms;     // after the last change
constexpr auto maximumDelay = 2500ms; // after the first one, so that the disk has it within three seconds
constexpr auto betweenSaves = 10s;    // while they fail
constexpr auto betweenReadings = 10s; // between attempts to read a saved history

/// Adds to a history what was recorded before it could be read, except what was cleared meanwhile. Returns the entries
/// whose pin has changed.
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

void ClipboardManager::load() {
    loading_ = !ready_;
    mayReadAgain_ = false;
    wantsToRead_ = false;
    platform_.vaultQueue->post([this, alive = lifetime_.watch(), storage = storage_, persist = options_.persist,
                                now = clock_(), &mainQueue = *platform_.mainQueue] {
        const auto loaded = std::make_shared<HistoryStorage::Loaded>(); // shared only since tasks are copied
        if (persist) {
            *loaded = storage->load(now);
        } else if (storage->begin()) {
            loaded->outcome = Outcome::loaded;
        }
        mainQueue.post([this, alive, loaded, setAside = storage->setAside()] {
            if (alive) {
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
        revision_ = platform_.pasteboard->changeCount(); // skip what was on the pasteboard before
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
    } else { // leave the disk as it is until it can be read
        wantsToRead_ = hasUnsaved();
        platform_.mainQueue->postAfter(betweenReadings, [this, alive = lifetime_.watch()] {
            if (alive) {
                mayReadAgain_ = true;
                if (wantsToRead_) {
                    readAgain();
                }
            }
        });
    }
    changes_.notify();
}

/// Puts the entries recorded meanwhile on top of those that were read.
void ClipboardManager::adopt(core::ClipboardHistory read) {
    const auto changedPins = mergeLater(read, history_, std::exchange(clearedUnread_, std::nullopt), options_);
    history_ = std::move(read);
    for (const auto& id : changedPins) {
        platform_.vaultQueue->post([storage = storage_, id] { storage->invalidate(id); });
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
    platform_.vaultQueue->post([this, alive = lifetime_.watch(), storage = storage_, history, now = clock_(),
                                &mainQueue = *platform_.mainQueue] {
        auto found = storage->recover(history, now);
        mainQueue.post(
            [this, alive, history, total = found.total, recovered = core::ClipboardHistory(std::move(found.entries))] {
                if (alive) {
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
        [entries = history_.entries(), history, isComplete = lastRecovery_->recovered == total, now = clock_()](
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

/// Saves soon after the last of several changes, and within three seconds of the first, however many follow.
void ClipboardManager::save() {
    if (!ready_) {
        return; // the disk's contents are not known yet; saved once they are loaded
    }
    ++lastChange_;
    saveAfter(saveDelay, &ClipboardManager::lastChange_);
    if (!std::exchange(isSaveDue_, true)) {
        saveAfter(maximumDelay, &ClipboardManager::lastSave_);
    }
}

/// Unless the number has moved on by then.
void ClipboardManager::saveAfter(std::chrono::milliseconds delay, std::uint64_t ClipboardManager::*number) {
    platform_.mainQueue->postAfter(delay, [this, alive = lifetime_.watch(), number, current = this->*number] {
        if (alive && this->*number == current) {
            saveNow();
        }
    });
}

void ClipboardManager::saveNow() {
    ++lastChange_; // whatever waits for a pause, for the three seconds or for a retry has nothing left to do
    ++lastSave_;
    isSaveDue_ = false;
    if (options_.persist && !isRead_) {
        readAgain(); // saves on success
    } else if (isSaving_) {
        savesAgain_ = true; // a disk that is slower than the copies gets the latest ones afterwards
    } else {
        isSaving_ = true;
        store([entries = history_.entries(), persist = options_.persist, now = clock_()](
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

/// At the end there is no later moment: reads what could not be read before on the queue that saves.
void ClipboardManager::saveLast() {
    if (isRead_ || !options_.persist) {
        isSaving_ = false; // nobody waits for the current one
        saveNow();
    } else if (hasUnsaved()) {
        platform_.vaultQueue->post(
            [storage = storage_, history = history_, cleared = clearedUnread_, options = options_, now = clock_()] {
                auto loaded = storage->load(now);
                if (loaded.outcome != Outcome::loaded && loaded.outcome != Outcome::setAside) {
                    return;
                }
                for (const auto& id : mergeLater(loaded.history, history, cleared, options)) {
                    storage->invalidate(id);
                }
                static_cast<void>(storage->save(loaded.history.entries(), now)); // nobody is left to notify
            });
    }
}

/// Runs the work on the disk, then publishes whether it failed and what is set aside now.
void ClipboardManager::store(std::function<bool(HistoryStorage&)> work, std::function<void(bool hasFailed)> done) {
    platform_.vaultQueue->post([this, alive = lifetime_.watch(), storage = storage_, work = std::move(work),
                                done = std::move(done), &mainQueue = *platform_.mainQueue] {
        const bool hasFailed = !work(*storage);
        mainQueue.post([this, alive, hasFailed, done, setAside = storage->setAside()] {
            if (!alive || !started_) {
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

} // namespace quillane
