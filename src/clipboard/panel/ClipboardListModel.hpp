// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/panel/EntryFiles.hpp"
#include "core/clipboard/ClipboardEntry.hpp"
#include "core/clipboard/SearchText.hpp"
#include "core/localization/AppLanguage.hpp"

#include <QAbstractListModel>

#include <optional>
#include <string>
#include <vector>

namespace quillane {

/// The search results as the list's model.
class ClipboardListModel : public QAbstractListModel {
    Q_OBJECT

public:
    explicit ClipboardListModel(EntryFiles& files) : files_(files) {}

    /// Takes over the results. Rows whose entries keep their places are kept. From the row `matchCount` on, the entries
    /// match the second query instead.
    void setEntries(const std::vector<core::ClipboardEntry>& entries, const std::string& query, std::size_t matchCount,
                    const std::string& secondQuery);

    void setLanguage(core::AppLanguage language) { language_ = language; }

    [[nodiscard]] core::AppLanguage language() const { return language_; }

    /// The entry of an existing row.
    [[nodiscard]] const core::ClipboardEntry& entry(int row) const {
        return entries_.at(static_cast<std::size_t>(row));
    }

    [[nodiscard]] std::optional<int> rowOf(const core::Uuid& id) const;

    /// What the entry of the row matches.
    [[nodiscard]] const core::SearchQuery& query(int row) const {
        return static_cast<std::size_t>(row) < matchCount_ ? query_ : secondQuery_;
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;

    /// The name for screen readers.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    EntryFiles& files_;
    core::AppLanguage language_ = core::AppLanguage::english;
    std::vector<core::ClipboardEntry> entries_;
    core::SearchQuery query_{{}};
    std::size_t matchCount_ = 0;
    core::SearchQuery secondQuery_{{}};
};

} // namespace quillane
