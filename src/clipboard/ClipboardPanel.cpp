// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/ClipboardPanel.hpp"

#include "core/clipboard/SearchText.hpp"
#include "core/localization/Texts.hpp"
#include "platform/Platform.hpp"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace quillane {

namespace {

namespace keys = core::clipboardPanelKeys;
namespace texts = core::texts;
using core::clipboardSnapshot::RestoreMode;
using namespace std::chrono_literals;

constexpr auto betweenAttempts = 50ms;
constexpr int maximumAttempts = 20;
constexpr core::KeyCode keyV = 9;

template <typename... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};

template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>; // which not every compiler deduces

} // namespace

ClipboardPanel::ClipboardPanel(ClipboardManager& manager, const Platform& platform)
    : manager_(manager), platform_(platform), managerChanges_(manager.onChanged([this] {
          if (visible_) {
              update();
          }
      })) {
    manager_.onTogglePanel = [this] { toggle(); };
    manager_.onClosePanel = [this] { close(); };
}

ClipboardPanel::~ClipboardPanel() {
    manager_.onTogglePanel = nullptr;
    manager_.onClosePanel = nullptr;
}

void ClipboardPanel::noteFrontmostApplication() {
    if (auto front = platform_.workspace->frontmostApplication()) {
        noted_ = std::move(front);
    }
}

void ClipboardPanel::toggle() {
    if (visible_) {
        close();
    } else {
        noteFrontmostApplication();
        show(noted_);
    }
}

void ClipboardPanel::show(std::optional<RunningApplication> target) {
    target_ = std::move(target);
    visible_ = true;
    query_.clear();
    message_.reset();
    selection_.reset();
    manager_.readAgain();
    update();
    if (const auto callback = onShow) { // the first call may replace it
        callback();
    }
}

void ClipboardPanel::close() {
    if (!std::exchange(visible_, false)) {
        return;
    }
    filtered_.clear(); // their contents may be large and may be deleted meanwhile
    if (onClose) {
        onClose();
    }
}

// Search and selection

void ClipboardPanel::setQuery(std::string query) {
    if (query == query_) {
        return;
    }
    query_ = std::move(query);
    message_.reset();
    update();
}

void ClipboardPanel::update() {
    filtered_ = manager_.history().filtered(query_, manager_.options());
    findRetyped();
    refreshSelection();
    changes_.notify();
}

/// A word that was typed in the wrong layout finds what was meant, below what was typed.
void ClipboardPanel::findRetyped() {
    matchCount_ = filtered_.size();
    retypedQuery_.reset();
    if (!retyped || core::SearchQuery(query_).isEmpty()) {
        return;
    }
    auto query = retyped(query_);
    if (!query || core::SearchQuery(*query).isEmpty()) {
        return;
    }
    auto more = manager_.history().filtered(*query, manager_.options());
    std::unordered_set<core::Uuid> matching;
    for (const auto& entry : filtered_) {
        matching.insert(entry.id);
    }
    std::erase_if(more, [&](const auto& entry) { return matching.contains(entry.id); });
    if (!more.empty()) {
        std::ranges::move(more, std::back_inserter(filtered_));
        retypedQuery_ = std::move(query);
    }
}

void ClipboardPanel::refreshSelection() {
    if (selectedIndex()) {
        return;
    }
    selection_.reset();
    if (!filtered_.empty()) {
        selection_ = filtered_.front().id;
    }
}

std::optional<std::size_t> ClipboardPanel::selectedIndex() const {
    const auto found = std::ranges::find(filtered_, selection_, &core::ClipboardEntry::id);
    if (!selection_ || found == filtered_.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - filtered_.begin());
}

void ClipboardPanel::select(const core::Uuid& id) {
    if (id != selection_ && std::ranges::find(filtered_, id, &core::ClipboardEntry::id) != filtered_.end()) {
        selection_ = id;
        changes_.notify();
    }
}

void ClipboardPanel::moveSelection(int by) {
    const auto selected = selectedIndex();
    if (!selected) {
        return;
    }
    const auto last = static_cast<std::ptrdiff_t>(filtered_.size()) - 1;
    const auto next = std::clamp(static_cast<std::ptrdiff_t>(*selected) + by, std::ptrdiff_t{0}, last);
    select(filtered_[static_cast<std::size_t>(next)].id);
}

void ClipboardPanel::remove(const core::Uuid& id) {
    if (id == selection_) {
        const auto selected = selectedIndex();
        const auto next = selected && *selected + 1 < filtered_.size() ? *selected + 1 : selected.value_or(0) - 1;
        if (next < filtered_.size()) {
            selection_ = filtered_[next].id;
        }
    }
    manager_.remove(id); // reports the change
}

void ClipboardPanel::turnRecordingOn() {
    auto options = manager_.options();
    options.enabled = true;
    manager_.setOptions(options);
}

bool ClipboardPanel::handle(core::KeyCode keyCode, core::EventFlags flags) {
    const auto action = keys::action(keyCode, flags, platform_.desktop);
    if (!action) {
        return false;
    }
    const auto selection = selection_;
    std::visit(Overloaded{[&](const keys::Move& move) { moveSelection(move.by); },
                          [&](const keys::ChooseSelected& chosen) {
                              if (selection) {
                                  choose(*selection, chosen.choice);
                              }
                          },
                          [&](const keys::PasteAt& at) {
                              if (at.index < filtered_.size()) {
                                  const auto id = filtered_[at.index].id;
                                  choose(id, Choice::paste);
                              }
                          },
                          [&](const keys::RemoveSelected&) {
                              if (selection) {
                                  remove(*selection);
                              }
                          },
                          [&](const keys::Close&) { close(); }},
               *action);
    return true;
}

// Pasting

void ClipboardPanel::choose(const core::Uuid& id, Choice choice) {
    const auto& entries = manager_.history().entries();
    const auto entry = std::ranges::find(entries, id, &core::ClipboardEntry::id);
    const bool refersToFiles = entry != entries.end() && entry->kind == core::ClipboardKind::files;
    if (!manager_.copy(id, choice == Choice::plainPaste ? RestoreMode::plainText : RestoreMode::full)) {
        showMessage(refersToFiles ? texts::originalFileIsGone : texts::cannotCopyItem);
        return;
    }
    ++generation_;
    if (choice == Choice::copyOnly) {
        close();
        return;
    }
    if (!platform_.permissions->isGranted(core::MacPermission::accessibility)) {
        showMessage(texts::itemCopiedAllowAccessibility.on(platform_.desktop));
        return;
    }
    if (!target_ || !platform_.workspace->isRunning(target_->pid)) {
        showMessage(texts::itemCopiedReturnToApp.on(platform_.desktop));
        return;
    }
    close();
    platform_.workspace->activateApplication(target_->pid);
    schedule({generation_, platform_.pasteboard->changeCount(), target_->pid});
}

void ClipboardPanel::showMessage(const core::LocalizedText& message) {
    message_ = message;
    changes_.notify();
}

void ClipboardPanel::schedule(const Attempt& attempt) {
    platform_.mainQueue->postAfter(betweenAttempts, [this, alive = lifetime_.watch(), attempt] {
        if (alive) {
            attemptPaste(attempt);
        }
    });
}

void ClipboardPanel::attemptPaste(Attempt attempt) {
    if (attempt.generation != generation_ || visible_ || platform_.pasteboard->changeCount() != attempt.changeCount ||
        !platform_.workspace->isRunning(attempt.target)) {
        return;
    }
    const auto front = platform_.workspace->frontmostApplication();
    if (front && front->pid == attempt.target && !platform_.secureInput->isEnabled() &&
        platform_.keyEvents->postKey(attempt.target, keyV, core::flags::command)) {
        return;
    }
    if (attempt.number < maximumAttempts) {
        ++attempt.number;
        schedule(attempt);
    } else if (onPasteFailed) {
        onPasteFailed(texts::itemCopiedReturnToApp.on(platform_.desktop));
    }
}

} // namespace quillane
