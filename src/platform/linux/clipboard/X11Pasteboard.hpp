// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Pasteboard.hpp"
#include "platform/linux/clipboard/X11SelectionOwner.hpp"
#include "platform/linux/clipboard/X11SelectionReader.hpp"
#include "platform/linux/x11/X11Connection.hpp"

#include <QTimer>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillane {

/// Timeouts for owners of contents, and for programs that read them from here.
struct X11PasteboardLimits {
    X11SelectionReader::Limits reading = {};
    std::chrono::milliseconds writing = std::chrono::seconds(10); ///< maximum time between two signs of life
};

/// The CLIPBOARD selection, followed through XFixes. Contents are fetched from their owner when they change, if there
/// is interest in them, and read from memory. The connection must be the pasteboard's own (see X11SelectionOwner).
class X11Pasteboard final : public Pasteboard {
public:
    /// Calls back with who was in front at a time of the server, once that is known.
    using FindSource = std::function<void(xcb_timestamp_t, std::function<void(PasteboardSource)>)>;

    /// A change by another program is announced after `findSource` has called back: the switch to an application and
    /// its copy arrive in any order, and late where the machine is busy. Without it, a change is announced at once.
    explicit X11Pasteboard(X11Connection& connection, X11PasteboardLimits limits = {}, FindSource findSource = nullptr);

    [[nodiscard]] std::int64_t changeCount() const override { return changeCount_; }

    [[nodiscard]] std::vector<std::vector<std::string>> itemTypes() const override;
    [[nodiscard]] std::optional<core::SharedBytes> data(std::size_t item, std::string_view type) const override;
    [[nodiscard]] std::optional<std::string> string(std::string_view type) const override;
    void clear() override;
    bool setString(std::string_view type, std::string_view text) override;
    bool write(std::vector<core::PasteboardItem> items) override;

    void setInterest(Interest interest) override { interest_ = std::move(interest); }

    [[nodiscard]] std::optional<PasteboardSource> source() const override { return front_; }

    core::Subscription onChanged(std::function<void()> callback) override {
        return changes_.subscribe(std::move(callback));
    }

private:
    struct Item {
        std::vector<std::string> types;
        std::map<std::string, core::SharedBytes, std::less<>> data;
    };

    /// Another client that has taken the selection, or none that has.
    struct Owner {
        xcb_window_t window;
        xcb_timestamp_t time;
    };

    void follow();
    void handle(const xcb_generic_event_t& event);
    void noteOwner(xcb_window_t owner, xcb_timestamp_t time);
    void followOwner();
    void announce(const Owner& owner);
    void retakeSelection();
    [[nodiscard]] std::vector<std::string_view> wanted() const;
    void requestBytes(std::string_view target, std::function<void(X11SelectionReader::Contents)> done);
    void fetchTargets();
    void fetchWanted();
    void fetchSource();
    void cancelFetch();
    [[nodiscard]] bool asksAgain();
    void fetchUriList();
    void takeUriList(const X11SelectionReader::Contents& contents);
    void fetchNext();
    void publish(std::vector<Item> items);
    [[nodiscard]] std::size_t bytesLeft() const;

    X11Connection& connection_;
    std::unordered_map<xcb_atom_t, std::string_view> targetNames_;
    std::unordered_map<std::string_view, xcb_atom_t> atoms_;
    X11SelectionReader reader_;
    X11SelectionOwner owner_;
    const FindSource findSource_;
    std::optional<PasteboardSource> front_; ///< at the last change by another program
    Interest interest_;
    std::int64_t changeCount_ = 1;
    int takeovers_ = 0; ///< takeovers of the selection by this program that the server has not confirmed yet
    std::optional<Owner> newOwner_; ///< noted in this turn
    std::vector<Item> items_;

    // The current fetch
    std::shared_ptr<void> fetch_; ///< replaced when it is cancelled; shared with a pending announcement
    xcb_timestamp_t time_ = XCB_CURRENT_TIME;
    QTimer askAgain_;
    int refusals_ = 0;       ///< number of repeated requests to the owner
    bool isRefused_ = false; ///< an offered type was not delivered
    std::vector<std::string_view> targets_;
    core::PasteboardTypeSet types_;
    std::optional<std::string> source_; ///< the text of the source marker, once it was fetched; empty without one
    std::vector<std::string> toFetch_;
    std::vector<Item> fetched_;

    core::Listeners<> changes_;
    core::Subscription events_;
    core::Subscription losses_;
    core::Subscription openings_;
    core::Subscription turns_;
    core::Subscription windows_;
};

} // namespace quillane
