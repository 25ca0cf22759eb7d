// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "core/support/Lifetime.hpp"
#include "platform/linux/clipboard/X11Pasteboard.hpp"

#include "core/clipboard/ClipboardSnapshot.hpp"
#include "core/clipboard/PasteboardTypes.hpp"
#include "platform/linux/clipboard/SelectionPeer.hpp"
#include "platform/linux/x11/X11TestServer.hpp"

#include <gmock/gmock.h>

#include <array>
#include <cstring>

namespace quillane {

using core::clipboardSnapshot::RestoreMode;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace std::string_literals;
using testing::SelectionPeer;
using testing::waitUntil;
using Manner = SelectionPeer::Manner;

inline constexpr std::size_t mega = 1'048'576;

inline std::vector<std::byte> bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

inline std::string textOf(const std::vector<std::byte>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

inline std::string noise(std::size_t size) {
    std::string bytes(size, '\0');
    std::uint32_t state = 12'345;
    for (auto& byte : bytes) {
        state = state * 1'664'525 + 1'013'904'223;
        byte = static_cast<char>(state >> 24U);
    }
    return bytes;
}

/// For owners that do answer: on a loaded machine a well-behaved program may exceed the usual limits.
inline constexpr X11PasteboardLimits generousLimits{{std::chrono::seconds(60), std::chrono::seconds(60)},
                                                    std::chrono::seconds(60)};
inline constexpr X11PasteboardLimits strictLimits{{std::chrono::milliseconds(400), std::chrono::milliseconds(1'500)},
                                                  std::chrono::milliseconds(400)};

class X11PasteboardTest : public testing::X11Test {
protected:
    explicit X11PasteboardTest(X11PasteboardLimits limits = generousLimits)
        : ownedPasteboard_(std::make_unique<X11Pasteboard>(*connection_, limits)) {
        follow();
    }

    void follow() {
        pasteboard_.setInterest([this](const auto& types, const auto& source) {
            return core::clipboardSnapshot::wantedTypes(types, options_, {}, source);
        });
    }

    /// Waits until the clipboard has changed hands and its contents have been fetched, or given up.
    void waitForContents(int noticesBefore) {
        ASSERT_TRUE(waitUntil([&] { return notices_ >= noticesBefore + 2; }, std::chrono::seconds(60)));
    }

    void copied(std::map<std::string, std::string> contents, Manner manner = Manner::whole) {
        const auto before = notices_;
        peer_.own(std::move(contents), manner);
        waitForContents(before);
    }

    std::optional<core::ClipboardEntry> capture() {
        return core::clipboardSnapshot::capture(pasteboard_, options_,
                                                {"com.example.front", "Front", false, core::Date{1}});
    }

    [[nodiscard]] std::string capturedText() {
        const auto entry = capture();
        return entry ? *entry->text : "(nothing)";
    }

    /// The first flavour of the captured copy.
    [[nodiscard]] std::string capturedBytes() {
        const auto entry = capture();
        return entry ? textOf(*entry->items->front().front().data) : "(nothing)";
    }

    /// Waits until the server has executed all requests.
    void settle() {
        bool answered = false;
        connection_->await<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection_->raw()), lifetime_,
                                                        [&](const auto*) { answered = true; });
        connection_->flush();
        ASSERT_TRUE(waitUntil([&] { return answered; }));
    }

    [[nodiscard]] xcb_window_t ownerOfClipboard() {
        auto* c = peer_.connection().raw();
        const XReply<xcb_get_selection_owner_reply_t> reply(
            xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, peer_.atom("CLIPBOARD")), nullptr));
        return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
    }

    /// What another program gets for a target.
    X11SelectionReader::Contents paste(std::string_view target, std::string_view selection = "CLIPBOARD") {
        X11SelectionReader reader(peer_.connection(), peer_.atom(selection), generousLimits.reading);
        std::optional<X11SelectionReader::Contents> result;
        reader.request(peer_.atom(target), XCB_CURRENT_TIME, 100 * mega,
                       [&](auto contents) { result = std::move(contents); });
        EXPECT_TRUE(waitUntil([&] { return result.has_value(); }, std::chrono::seconds(70)));
        return std::move(*result);
    }

    std::string pastedText(std::string_view target, std::string_view selection = "CLIPBOARD") {
        const auto contents = paste(target, selection);
        return contents.failure ? "(failed)" : textOf(contents.bytes);
    }

    void restored(const core::ClipboardEntry& entry) {
        ASSERT_TRUE(core::clipboardSnapshot::restore(entry, pasteboard_, RestoreMode::full));
        settle();
    }

    static core::ClipboardEntry entryOf(core::ClipboardKind kind, core::ClipboardItems items) {
        return core::ClipboardEntry::make(kind, "text", "com.example.first", "First", std::move(items), core::Date{});
    }

    core::ClipboardOptions options_;
    core::Lifetime lifetime_;
    std::unique_ptr<X11Connection> connection_ = std::move(*X11Connection::open(server_.display()));
    std::unique_ptr<X11Pasteboard> ownedPasteboard_; ///< until a test gives it to a Platform
    X11Pasteboard& pasteboard_ = *ownedPasteboard_;
    int notices_ = 0; ///< that the pasteboard has given
    core::Subscription counting_ = pasteboard_.onChanged([this] { ++notices_; });
    SelectionPeer peer_{server_.display()};
};

} // namespace quillane
