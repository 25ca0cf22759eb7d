// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/shell/FileTableModel.hpp"

#include "core/localization/DateText.hpp"
#include "core/localization/NumberText.hpp"
#include "core/localization/Texts.hpp"

#include <QDateTime>
#include <QFileInfo>
#include <QFileSystemModel>

#include <string>

namespace quillane {

namespace texts = core::texts;

namespace {

std::string kindText(const QFileInfo& file, core::AppLanguage language) {
    if (file.isDir()) {
        return (file.isRoot() ? texts::qtDrive : texts::qtFolder).rendered(language);
    }
    if (file.suffix().isEmpty() || file.completeBaseName().isEmpty()) { // a leading dot begins no suffix
        return texts::fileItem.rendered(language);
    }
    return texts::fileOfType(file.suffix().toUpper().toStdString()).rendered(language);
}

std::string dateText(const QFileInfo& file, core::AppLanguage language) {
    const auto changed = file.lastModified();
    if (!changed.isValid()) {
        return {};
    }
    return core::dateText({static_cast<double>(changed.toSecsSinceEpoch()) - core::referenceDateInUnixSeconds},
                          language);
}

} // namespace

void FileTableModel::setLanguage(core::AppLanguage language) {
    language_ = language;
    emit headerDataChanged(Qt::Horizontal, name, date);
}

QVariant FileTableModel::data(const QModelIndex& index, int role) const {
    const auto* files = qobject_cast<const QFileSystemModel*>(sourceModel());
    if (role != Qt::DisplayRole || index.column() == name || files == nullptr) {
        return QIdentityProxyModel::data(index, role);
    }
    const auto file = files->fileInfo(mapToSource(index));
    switch (index.column()) {
    case size:
        return file.isDir() ? QString()
                            : QString::fromStdString(core::sizeText(static_cast<double>(file.size()), language_));
    case kind:
        return QString::fromStdString(kindText(file, language_));
    case date:
        return QString::fromStdString(dateText(file, language_));
    default:
        return QIdentityProxyModel::data(index, role);
    }
}

} // namespace quillane
