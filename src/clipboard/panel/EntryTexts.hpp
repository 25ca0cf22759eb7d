// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "clipboard/panel/EntryFiles.hpp"
#include "core/clipboard/ClipboardEntry.hpp"
#include "core/localization/AppLanguage.hpp"
#include "core/localization/LocalizedText.hpp"

#include <QSize>
#include <QString>

#include <string>

namespace quillane {

/// The kind of an entry: "Text", "Image", "File" or "Files".
[[nodiscard]] QString kindName(const core::ClipboardEntry& entry, core::AppLanguage language);

/// The names of the entry's files, each isolated from the others' direction.
[[nodiscard]] QStringList fileNames(const core::ClipboardEntry& entry);

/// "1280 × 720", in this order in every language.
[[nodiscard]] QString sizeName(QSize pixels);

/// The line below the contents: the source application, or else the kind; then other details.
[[nodiscard]] QString sourceLine(const core::ClipboardEntry& entry, QSize pixels, EntryFiles::State state,
                                 core::AppLanguage language);

/// What a screen reader says for the entry: its kind, its beginning, its source, whether it is pinned.
[[nodiscard]] QString accessibleName(const core::ClipboardEntry& entry, EntryFiles::State state,
                                     core::AppLanguage language);

/// A query as a line of the panel names it: its beginning, with an ellipsis for the rest.
[[nodiscard]] std::string inOneLine(const std::string& query);

} // namespace quillane
