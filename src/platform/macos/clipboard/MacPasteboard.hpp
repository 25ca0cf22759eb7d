// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Pasteboard.hpp"
#include "platform/macos/foundation/MacActivity.hpp"

#include <memory>

namespace quillane {

/// The general pasteboard (NSPasteboard). The pasteboard server holds the contents, so they are read on request, and no
/// interest needs to be declared beforehand.
class MacPasteboard final : public Pasteboard {
public:
    MacPasteboard();
    ~MacPasteboard() override;

    [[nodiscard]] std::int64_t changeCount() const override;
    [[nodiscard]] std::vector<std::vector<std::string>> itemTypes() const override;

    /// NSPasteboard.types: the types of its items, and names that are older than uniform type identifiers.
    [[nodiscard]] std::vector<std::string> ownTypes() const override;
    [[nodiscard]] std::optional<core::SharedBytes> data(std::size_t item, std::string_view type) const override;
    [[nodiscard]] std::optional<std::string> string(std::string_view type) const override;

    /// NSURL.filePathURL for references by identifier, in which Finder copies files.
    [[nodiscard]] core::FileFinder fileFinder() const override;
    void clear() override;
    bool setString(std::string_view type, std::string_view text) override;
    bool write(std::vector<core::PasteboardItem> items) override;

    /// Only the presence of an interest matters: the system must then not slow the program down.
    void setInterest(Interest interest) override;

    /// NSPasteboard.accessBehavior, macOS 15.4 and later.
    [[nodiscard]] PasteboardAccess access() const override;
    void openAccessSettings() override;

private:
    struct Items;
    std::unique_ptr<MacActivity> recording_;
    std::unique_ptr<Items> items_; ///< of the last change count that was read
};

} // namespace quillane
