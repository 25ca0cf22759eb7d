// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Subscription.hpp"
#include "platform/Pasteboard.hpp"

#include <QObject>

namespace quillane {

/// The clipboard of a session without an X server, through QClipboard. It can be written. Copies of other programs move
/// the change count and are never read, because reading would wait for them.
class QtPasteboard final : public QObject, public Pasteboard {
public:
    /// Qt's application object must exist.
    QtPasteboard();

    [[nodiscard]] std::int64_t changeCount() const override { return changeCount_; }

    [[nodiscard]] std::vector<std::vector<std::string>> itemTypes() const override;
    [[nodiscard]] std::optional<core::SharedBytes> data(std::size_t item, std::string_view type) const override;
    [[nodiscard]] std::optional<std::string> string(std::string_view type) const override;
    void clear() override;
    bool setString(std::string_view type, std::string_view text) override;
    bool write(std::vector<core::PasteboardItem> items) override;

    void setInterest(Interest) override {}

private:
    [[nodiscard]] bool isOwner() const;

    std::vector<core::PasteboardItem> items_; ///< what this program wrote
    std::int64_t changeCount_ = 1;
    bool isWriting_ = false;
};

} // namespace quillane
