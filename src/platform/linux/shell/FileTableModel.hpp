// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/localization/AppLanguage.hpp"

#include <QIdentityProxyModel>

namespace quillane {

/// The files of a QFileSystemModel, with sizes, kinds and dates in the interface language instead of the system's. Main
/// thread.
class FileTableModel : public QIdentityProxyModel {
public:
    using QIdentityProxyModel::QIdentityProxyModel;

    void setLanguage(core::AppLanguage language);

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

    /// The columns as QFileSystemModel has them.
    enum Column { name, size, kind, date };

private:
    core::AppLanguage language_ = core::AppLanguage::english;
};

} // namespace quillane
