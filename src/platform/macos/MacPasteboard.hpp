// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Pasteboard.hpp"

namespace quillane {

/// The general pasteboard (NSPasteboard). The pasteboard server holds the contents, so they are read when they are
/// asked for, and nobody needs to say beforehand what interests them.
class MacPasteboard final : public Pasteboard {
public:
    [[nodiscard]] std::int64_t changeCount() const override;
    [[nodiscard]] std::vector<std::vector<std::string>> itemTypes() const override;
    [[nodiscard]] std::optional<core::SharedBytes> data(std::size_t item, std::string_view type) const override;
    [[nodiscard]] std::optional<std::string> string(std::string_view type) const override;
    void clear() override;
    bool setString(std::string_view type, std::string_view text) override;
    bool write(std::vector<core::PasteboardItem> items) override;

    void setInterest(Interest) override {}
};

} // namespace quillane
