// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardManager.hpp"

#include "core/clipboard/ClipboardKey.hpp"
#include "core/clipboard/ClipboardVault.hpp"
#include "core/localization/Texts.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

namespace quillane {

namespace {

namespace texts = core::texts;
using namespace std::chrono_literals;

constexpr auto pollInterval = 500ms;
constexpr auto saveDelay = 250ms;
constexpr auto rereadDelay = 100ms;
constexpr int mostRereads = 5;
constexpr HotKey shortcut{9, core::flags::command | core::flags::shift}; // V

core::ClipboardOptions storedOptions(const core::UserDefaults& defaults) {
    const auto data = defaults.data(core::clipboardOptionsKey);
    return data ? core::decodeClipboardOptions(**data).value_or(core::ClipboardOptions()) : core::ClipboardOptions();
}

} // namespace

struct ClipboardManager::Vault {
    std::filesystem::path folder;
    core::SecretStore& secretStore;
    std::optional<core::ClipboardVault> vault = std::nullopt;

    /// Obtains the key and makes the vault.
    [[nodiscard]] bool open() {
        auto key = core::obtainClipboardKey(secretStore);
        if (!key) {
            return false;
        }
        auto opened = core::ClipboardVault::open(folder, std::move(*key));
        if (!opened) {
            return false;
        }
        vault = std::move(*opened);
        return true;
    }

    /// Makes the disk say what the history is. False when it does not.
    [[nodiscard]] bool save(const std::vector<core::ClipboardEntry>& entries, bool persist) {
        if (persist) {
            return vault && vault->save(entries).has_value();
        }
        if (vault) {
            vault->invalidateCache();
        }
        return core::ClipboardVault::eraseFiles(folder).has_value();
    }
};

struct ClipboardManager::Loaded {
    core::ClipboardHistory history;
    bool isComplete = false;
};

ClipboardManager::ClipboardManager(ClipboardServices services)
    : services_(std::move(services)),
      options_(storedOptions(services_.userDefaults)),
      vault_(std::make_shared<Vault>(Vault{services_.vaultFolder, services_.secretStore})) {}

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
    ++saveWork_; // the one that is pending
    if (ready_) {
        saveNow();
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
    const auto moment = std::exchange(copied_, std::nullopt);
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
    services_.pasteboard.setInterest([this, weak = std::weak_ptr(alive_)](const core::PasteboardTypeSet& types) {
        return weak.expired() || !copied_ ? std::vector<std::string_view>()
                                          : core::ClipboardSnapshot::wantedTypes(types, options_, *copied_);
    });
    revision_ = services_.pasteboard.changeCount();
    timer_ = services_.mainQueue.repeat(pollInterval, [this] { poll(); });
}

void ClipboardManager::setOptions(const core::ClipboardOptions& options) {
    if (options == options_) {
        return;
    }
    options_ = options;
    services_.userDefaults.setObject(core::clipboardOptionsKey, core::encodeClipboardOptions(options_));
    history_.trim(options_);
    updateCollecting();
    updateShortcut();
    save();
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
    services_.vaultQueue.post([vault = vault_, id] {
        if (vault->vault) {
            vault->vault->invalidateCache(id); // the date by which the vault tells changes stays the same
        }
    });
    save();
    changes_.notify();
}

void ClipboardManager::remove(const core::Uuid& id) {
    history_.remove(id);
    save();
    changes_.notify();
}

void ClipboardManager::clear(core::ClipboardHistory::Clearing clearing) {
    history_.clear(clearing);
    save();
    changes_.notify();
}

bool ClipboardManager::copy(const core::Uuid& id, core::ClipboardSnapshot::RestoreMode mode) {
    const auto& entries = history_.entries();
    const auto entry = std::ranges::find(entries, id, &core::ClipboardEntry::id);
    if (entry == entries.end() || !core::ClipboardSnapshot::restore(*entry, services_.pasteboard, mode)) {
        return false;
    }
    history_.touch(id, services_.now());
    revision_ = services_.pasteboard.changeCount(); // not a copy of the user's
    copied_.reset();
    save();
    changes_.notify();
    return true;
}

// The vault

void ClipboardManager::load() {
    loading_ = true;
    services_.vaultQueue.post([this, weak = std::weak_ptr(alive_), vault = vault_, persist = options_.persist,
                               &mainQueue = services_.mainQueue] {
        const auto loaded = std::make_shared<Loaded>(); // shared only since tasks are copied
        loaded->isComplete = vault->open();
        if (loaded->isComplete && persist) {
            auto entries = vault->vault->load();
            loaded->isComplete = entries.has_value();
            if (entries) {
                loaded->history = core::ClipboardHistory(std::move(*entries));
            }
        } else if (!persist) {
            loaded->isComplete = core::ClipboardVault::eraseFiles(vault->folder) && loaded->isComplete;
        }
        mainQueue.post([this, weak, loaded] {
            if (!weak.expired()) {
                finishLoading(std::move(*loaded));
            }
        });
    });
}

void ClipboardManager::finishLoading(Loaded loaded) {
    if (!started_) {
        return;
    }
    history_ = std::move(loaded.history);
    history_.trim(options_);
    storageError_ = !loaded.isComplete;
    revision_ = services_.pasteboard.changeCount(); // what has been on the pasteboard before is not recorded
    loading_ = false;
    ready_ = true;
    if (loaded.isComplete) {
        save(); // else what could not be read stays as it is until there is something to save
    }
    changes_.notify();
}

void ClipboardManager::save() {
    if (!ready_) {
        return; // what is on the disk is not known yet; it is saved when it has been loaded
    }
    services_.mainQueue.postAfter(saveDelay, [this, weak = std::weak_ptr(alive_), work = ++saveWork_] {
        if (!weak.expired() && work == saveWork_) {
            saveNow();
        }
    });
}

void ClipboardManager::saveNow() {
    services_.vaultQueue.post([this, weak = std::weak_ptr(alive_), vault = vault_, entries = history_.entries(),
                               persist = options_.persist, &mainQueue = services_.mainQueue] {
        const bool isSaved = vault->save(entries, persist);
        mainQueue.post([this, weak, isSaved] {
            if (!weak.expired()) {
                setStorageError(!isSaved);
            }
        });
    });
}

void ClipboardManager::setStorageError(bool error) {
    if (std::exchange(storageError_, error) != error) {
        changes_.notify();
    }
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
