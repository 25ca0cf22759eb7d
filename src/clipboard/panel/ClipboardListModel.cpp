// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/ClipboardListModel.hpp"

#include "clipboard/panel/EntryTexts.hpp"

#include <algorithm>

namespace quillane {

void ClipboardListModel::setEntries(const std::vector<core::ClipboardEntry>& entries, const std::string& query,
                                    std::size_t matchCount, const std::string& secondQuery) {
    query_ = core::SearchQuery(query);
    matchCount_ = matchCount;
    secondQuery_ = core::SearchQuery(secondQuery);
    if (std::ranges::equal(entries, entries_, {}, &core::ClipboardEntry::id, &core::ClipboardEntry::id)) {
        entries_ = entries; // a pin, a date or the bold parts may have changed
        if (!entries_.empty()) {
            emit dataChanged(index(0), index(rowCount() - 1));
        }
        return;
    }
    beginResetModel();
    entries_ = entries;
    endResetModel();
}

std::optional<int> ClipboardListModel::rowOf(const core::Uuid& id) const {
    const auto found = std::ranges::find(entries_, id, &core::ClipboardEntry::id);
    if (found == entries_.end()) {
        return std::nullopt;
    }
    return static_cast<int>(found - entries_.begin());
}

int ClipboardListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant ClipboardListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount() || role != Qt::AccessibleTextRole) {
        return {};
    }
    const auto& shown = entry(index.row());
    const auto state = shown.kind == core::ClipboardKind::files ? files_.state(shown) : EntryFiles::State::present;
    return accessibleName(shown, state, language_);
}

} // namespace quillane
