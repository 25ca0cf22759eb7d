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

    /// Takes over the results. Rows whose entries keep their places are kept.
    void setEntries(const std::vector<core::ClipboardEntry>& entries, const std::string& query);

    void setLanguage(core::AppLanguage language) { language_ = language; }

    [[nodiscard]] core::AppLanguage language() const { return language_; }

    /// The entry of an existing row.
    [[nodiscard]] const core::ClipboardEntry& entry(int row) const {
        return entries_.at(static_cast<std::size_t>(row));
    }

    [[nodiscard]] std::optional<int> rowOf(const core::Uuid& id) const;

    [[nodiscard]] const core::SearchQuery& query() const { return query_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;

    /// The name for screen readers.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    EntryFiles& files_;
    core::AppLanguage language_ = core::AppLanguage::english;
    std::vector<core::ClipboardEntry> entries_;
    core::SearchQuery query_{{}};
};

} // namespace quillane
