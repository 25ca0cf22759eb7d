// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardManager.hpp"

#include "core/clipboard/EntryDates.hpp"
#include "core/localization/Texts.hpp"
#include "platform/Platform.hpp"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

namespace quillane {

namespace {

namespace texts = core::texts;
using namespace std::chrono_literals;

constexpr auto pollInterval = 500ms;
constexpr auto rereadDelay = 100ms;
constexpr int maximumRereads = 5;
constexpr HotKey shortcut{9, core::flags::command | core::flags::shift}; // V

core::ClipboardOptions storedOptions(const core::UserDefaults& defaults) {
    const auto data = defaults.data(core::clipboardOptionsKey);
    return data ? core::decodeClipboardOptions(**data).value_or(core::ClipboardOptions()) : core::ClipboardOptions();
}

} // namespace

ClipboardManager::ClipboardManager(const Platform& platform, std::filesystem::path vaultFolder, Clock clock)
    : platform_(platform),
      clock_(std::move(clock)),
      options_(storedOptions(*platform.userDefaults)),
      storage_(std::make_shared<HistoryStorage>(std::move(vaultFolder), *platform.secretStore)) {}

ClipboardManager::~ClipboardManager() {
    if (started_) {
        stop();
    }
}

void ClipboardManager::start() {
    started_ = true;
    notices_ = platform_.pasteboard->onChanged([this] {
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
    platform_.pasteboard->setInterest(nullptr);
    if (onClosePanel) {
        onClosePanel();
    }
    hotKey_.cancel();
    enabledForHotKey_ = false;
    saveAtOnce();
    platform_.vaultQueue->post([storage = storage_] { storage->close(); });
    platform_.vaultQueue->wait();
}

void ClipboardManager::saveAtOnce() {
    ++lastChange_; // pending saves have nothing left to do
    ++lastSave_;
    if (ready_) {
        saveLast();
    }
    platform_.vaultQueue->wait();
}

// Collecting

void ClipboardManager::poll() {
    if (noteChange()) {
        recordOnceFilled(0);
    }
}

/// Decides whether a copy may be recorded, and its source, when the pasteboard changes hands, however late its contents
/// arrive. False if it has not changed hands.
bool ClipboardManager::noteChange() {
    const auto changeCount = platform_.pasteboard->changeCount();
    if (std::exchange(revision_, changeCount) == changeCount) {
        return false;
    }
    copied_.reset();
    if (isCollecting() && ready_) {
        const auto source = platform_.pasteboard->source();
        if (source && !source->isKnown) {
            return true; // it may be an excluded application
        }
        const auto front = source ? source->application : platform_.workspace->frontmostApplication();
        copied_ = {.foreground = front ? front->bundleID.value_or(std::string()) : std::string(),
                   .sourceName = front ? front->name : std::string(),
                   .secureInput = platform_.secureInput->isEnabled(),
                   .now = clock_()};
    }
    return true;
}

/// A program may empty the pasteboard a moment before it fills it, within one change: look again for contents that are
/// not there yet.
void ClipboardManager::recordOnceFilled(int rereads) {
    record();
    if (copied_ && rereads < maximumRereads) {
        platform_.mainQueue->postAfter(rereadDelay, [this, alive = lifetime_.watch(), revision = revision_, rereads] {
            if (alive && revision == revision_) {
                recordOnceFilled(rereads + 1);
            }
        });
    }
}

/// Does nothing while the copy that was noted cannot be read.
void ClipboardManager::record() {
    if (!copied_ || platform_.pasteboard->changeCount() != revision_ || platform_.pasteboard->itemTypes().empty()) {
        return;
    }
    auto moment = std::exchange(copied_, std::nullopt);
    moment->now = core::entryDates::next(history_.entries(), moment->now);
    auto entry = core::clipboardSnapshot::capture(*platform_.pasteboard, options_, *moment);
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

/// Skips what was copied while recording was off.
void ClipboardManager::updateCollecting() {
    if (!started_ || std::exchange(collects_, isCollecting()) == isCollecting()) {
        return;
    }
    copied_.reset();
    timer_.cancel(); // while recording is off, nothing wakes the processor
    if (!collects_) {
        platform_.pasteboard->setInterest(nullptr);
        if (onClosePanel) {
            onClosePanel();
        }
        return;
    }
    platform_.pasteboard->setInterest([this, alive = lifetime_.watch()](const core::PasteboardTypeSet& types,
                                                                        const std::optional<std::string>& source) {
        return !alive || !copied_ ? std::vector<std::string_view>()
                                  : core::clipboardSnapshot::wantedTypes(types, options_, *copied_, source);
    });
    revision_ = platform_.pasteboard->changeCount();
    timer_ = platform_.mainQueue->repeat(pollInterval, [this] { poll(); });
}

void ClipboardManager::setOptions(const core::ClipboardOptions& options) {
    if (options == options_) {
        return;
    }
    const bool isTurnedOff = options_.enabled && !options.enabled;
    const bool wasCollecting = collects_;
    options_ = options;
    platform_.userDefaults->setObject(core::clipboardOptionsKey, core::encodeClipboardOptions(options_));
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
        return texts::historyShortcutInUse.on(platform_.desktop);
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
    platform_.vaultQueue->post([storage = storage_, id] {
        storage->invalidate(id); // the vault recognises changes by the date, which stays the same
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

bool ClipboardManager::copy(const core::Uuid& id, core::clipboardSnapshot::RestoreMode mode) {
    const auto& entries = history_.entries();
    const auto entry = std::ranges::find(entries, id, &core::ClipboardEntry::id);
    if (entry == entries.end() || !core::clipboardSnapshot::restore(*entry, *platform_.pasteboard, mode)) {
        return false;
    }
    history_.touch(id, core::entryDates::next(history_.entries(), clock_()));
    revision_ = platform_.pasteboard->changeCount(); // not a copy of the user's
    copied_.reset();
    save();
    changes_.notify();
    return true;
}

// The hot key

void ClipboardManager::updateShortcut() {
    const bool wanted = started_ && options_.enabled && !suspension_.remote;
    if (std::exchange(enabledForHotKey_, wanted) != wanted) {
        registerShortcut();
    }
}

void ClipboardManager::registerShortcut() {
    hotKey_.cancel();
    const bool hadConflict = std::exchange(hotKeyConflict_, false);
    if (enabledForHotKey_) {
        hotKey_ = platform_.hotKeys->registerHotKey(
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
