// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/ClipboardManager.hpp"
#include "core/clipboard/ClipboardPanelKeys.hpp"
#include "core/keyboard/EventFlags.hpp"
#include "core/support/Lifetime.hpp"
#include "platform/Workspace.hpp"

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace quillane {

/// The panel in which the user searches the clipboard history and chooses an entry to paste: what it shows and what
/// its keys do. `HistoryPanel` is its window. Main thread.
///
///     ClipboardPanel panel(clipboard, platform);
///     panel.onShow = [&] { window.present(); };
///     panel.onClose = [&] { window.hide(); };
///     panel.toggle();
class ClipboardPanel {
public:
    using Choice = core::clipboardPanelKeys::Choice;

    /// Both must outlive the panel.
    ClipboardPanel(ClipboardManager& manager, const Platform& platform);
    ~ClipboardPanel();
    ClipboardPanel(const ClipboardPanel&) = delete;
    ClipboardPanel& operator=(const ClipboardPanel&) = delete;

    /// Call it when another application has come to the front. If nothing is in front when the panel opens, it opens
    /// for the last one.
    void noteFrontmostApplication();

    /// Opens for the application in front, with an empty search and the first entry selected; closes if it is open.
    void toggle();

    void show(std::optional<RunningApplication> target);
    void close();

    [[nodiscard]] bool isVisible() const { return visible_; }

    [[nodiscard]] const std::string& query() const { return query_; }

    /// Searches at once. The selection stays if its entry is among the results.
    void setQuery(std::string query);

    /// The search results, in the order of display: what matches the query, then what only matches `retypedQuery`.
    [[nodiscard]] const std::vector<core::ClipboardEntry>& filtered() const { return filtered_; }

    /// The query as it would be in the other keyboard layout; none unless it finds more.
    [[nodiscard]] const std::optional<std::string>& retypedQuery() const { return retypedQuery_; }

    /// The number of results that match the query as typed.
    [[nodiscard]] std::size_t matchCount() const { return matchCount_; }

    [[nodiscard]] const std::optional<core::Uuid>& selection() const { return selection_; }

    /// Does nothing for an entry that is not among the results.
    void select(const core::Uuid& id);

    /// A notice about the last choice, until the next search.
    [[nodiscard]] const std::optional<core::LocalizedText>& message() const { return message_; }

    /// Performs the action of the key; false when it types in the search field.
    bool handle(core::KeyCode keyCode, core::EventFlags flags);

    /// Puts the entry on the pasteboard and, unless it is only to be copied, pastes it into the application that was in
    /// front when the panel opened.
    void choose(const core::Uuid& id, Choice choice);

    void togglePin(const core::Uuid& id) { manager_.pin(id); }

    /// The next entry is selected.
    void remove(const core::Uuid& id);

    [[nodiscard]] const core::ClipboardOptions& options() const { return manager_.options(); }

    /// The history is off: kept entries are shown, and nothing is added.
    [[nodiscard]] bool isRecordingOff() const { return !manager_.options().enabled; }

    void turnRecordingOn();

    /// What the user should know about the saved history.
    [[nodiscard]] std::optional<core::LocalizedText> notice() const { return manager_.notice(); }

    /// The history is empty, whatever the query.
    [[nodiscard]] bool isHistoryEmpty() const { return manager_.history().entries().empty(); }

    /// Returns a query as the same keys type it in the other keyboard layout, if that is another text. Absent where
    /// layouts are not known.
    std::function<std::optional<std::string>(const std::string& query)> retyped;

    std::function<void()> onShow;                                  ///< the window is to be placed and shown
    std::function<void()> onClose;                                 ///< the window is to be hidden
    std::function<void(const core::LocalizedText&)> onPasteFailed; ///< says what the user can still do

    /// Anything above has changed.
    core::Subscription onChanged(std::function<void()> callback) { return changes_.subscribe(std::move(callback)); }

private:
    struct Attempt {
        std::uint64_t generation = 0; ///< the choice that it belongs to
        std::int64_t changeCount = 0; ///< the pasteboard's, with the chosen entry on it
        pid_t target = 0;
        int number = 1;
    };

    void update();
    void findRetyped();
    void refreshSelection();
    void moveSelection(int by);
    [[nodiscard]] std::optional<std::size_t> selectedIndex() const;
    void showMessage(const core::LocalizedText& message);
    void schedule(const Attempt& attempt);
    void attemptPaste(Attempt attempt);

    ClipboardManager& manager_;
    const Platform& platform_;
    bool visible_ = false;
    std::string query_;
    std::optional<core::Uuid> selection_;
    std::optional<core::LocalizedText> message_;
    std::vector<core::ClipboardEntry> filtered_;
    std::size_t matchCount_ = 0; ///< of the results
    std::optional<std::string> retypedQuery_;
    std::uint64_t generation_ = 0;            ///< counts choices; a paste attempt of an older one stops
    std::optional<RunningApplication> noted_; ///< the application that was in front last
    std::optional<RunningApplication> target_;
    core::Listeners<> changes_;
    core::Lifetime lifetime_;
    core::Subscription managerChanges_;
};

} // namespace quillane
