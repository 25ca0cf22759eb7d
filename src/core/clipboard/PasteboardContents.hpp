// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/clipboard/ClipboardEntry.hpp"
#include "core/clipboard/FileReference.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillane::core {

/// One item to be put on the pasteboard.
struct PasteboardItem {
    std::vector<ClipboardRepresentation> representations;
    std::vector<std::pair<std::string, std::string>> strings; ///< type and text

    bool operator==(const PasteboardItem&) const = default;
};

/// The system's pasteboard as the clipboard rules read and write it. Main thread.
class PasteboardContents {
public:
    virtual ~PasteboardContents() = default;

    /// Changes whenever the contents change, whoever changes them.
    [[nodiscard]] virtual std::int64_t changeCount() const = 0;

    /// The types that each item offers, in the order of the items. Empty while there is nothing to read.
    [[nodiscard]] virtual std::vector<std::vector<std::string>> itemTypes() const = 0;

    /// The types that the pasteboard offers as a whole. macOS names older ones only here ("Pasteboard generator type"):
    /// among the types of an item they are dynamic identifiers.
    [[nodiscard]] virtual std::vector<std::string> ownTypes() const { return {}; }

    /// The bytes of one item for a type, or none when it has none.
    [[nodiscard]] virtual std::optional<SharedBytes> data(std::size_t item, std::string_view type) const = 0;

    /// The pasteboard's own text for a type, as UTF-8, or none when no item offers it or it is not text.
    [[nodiscard]] virtual std::optional<std::string> string(std::string_view type) const = 0;

    /// What finds the files whose URLs are on the pasteboard. It may outlive the pasteboard.
    [[nodiscard]] virtual FileFinder fileFinder() const { return referencedFile; }

    virtual void clear() = 0;

    /// Adds text to a pasteboard that has just been cleared. False when the system refuses.
    virtual bool setString(std::string_view type, std::string_view text) = 0;

    /// Puts the items on a pasteboard that has just been cleared. False when the system refuses.
    virtual bool write(std::vector<PasteboardItem> items) = 0;
};

} // namespace quillane::core
