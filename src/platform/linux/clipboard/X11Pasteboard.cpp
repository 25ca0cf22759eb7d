// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/clipboard/X11Pasteboard.hpp"

#include "core/clipboard/ClipboardSnapshot.hpp"
#include "core/clipboard/PasteboardTypes.hpp"
#include "core/support/Utf8.hpp"
#include "platform/linux/clipboard/ClipboardTargets.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <utility>

#include <xcb/xfixes.h>

namespace quillane {

namespace {

using Failure = X11SelectionReader::Failure;

constexpr std::size_t maximumTargetsBytes = 64 * 1'024;

/// TARGETS is the type of older clients.
bool isListOfTargets(const X11SelectionReader::Contents& contents, xcb_atom_t targets) {
    return contents.format == 32 && (contents.type == XCB_ATOM_ATOM || contents.type == targets);
}

xcb_atom_t atomOf(X11Connection& connection, std::string_view name) {
    return connection.internAtoms(std::array{name}).front();
}

constexpr int maximumRefusals = 3;
constexpr std::chrono::milliseconds untilAskedAgain{100};

/// Whether this failure means that the other contents cannot be read either.
bool isFatal(std::optional<Failure> failure) {
    return failure == Failure::tooLarge || failure == Failure::noAnswer;
}

} // namespace

X11Pasteboard::X11Pasteboard(X11Connection& connection, X11PasteboardLimits limits, FindSource findSource)
    : connection_(connection),
      reader_(connection, atomOf(connection, "CLIPBOARD"), limits.reading),
      owner_(connection, atomOf(connection, "CLIPBOARD"), limits.writing),
      findSource_(std::move(findSource)) {
    std::vector<std::string_view> names{"CLIPBOARD", "TARGETS"};
    names.insert(names.end(), clipboardTargets::known().begin(), clipboardTargets::known().end());
    const auto atoms = connection_.internAtoms(names);
    for (std::size_t i = 0; i < names.size(); ++i) {
        atoms_[names[i]] = atoms[i];
        targetNames_[atoms[i]] = names[i];
    }
    askAgain_.setSingleShot(true);
    QObject::connect(&askAgain_, &QTimer::timeout, &askAgain_, [this] { fetchTargets(); });
    events_ = connection_.onEvent([this](const xcb_generic_event_t& event) { handle(event); });
    losses_ = connection_.onLost([this] {
        askAgain_.stop();
        fetch_.reset();
        takeovers_ = 0;
        newOwner_.reset();
        ++changeCount_;
        front_.reset();
        items_.clear();
    });
    openings_ = connection_.onOpened([this] { follow(); });
    turns_ = connection_.onTurnEnd([this] { followOwner(); });
    windows_ = owner_.onWindowReplaced([this] { retakeSelection(); });
    follow();
}

void X11Pasteboard::follow() {
    if (connection_.extensions().hasXFixes) {
        xcb_xfixes_select_selection_input(connection_.raw(), connection_.root(), atoms_["CLIPBOARD"],
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
        connection_.flush();
    }
}

void X11Pasteboard::handle(const xcb_generic_event_t& event) {
    if (!connection_.extensions().hasXFixes) {
        return;
    }
    if ((event.response_type & 0x7fU) != connection_.extensions().xfixesFirstEvent + XCB_XFIXES_SELECTION_NOTIFY) {
        return;
    }
    const auto& notice = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (notice.selection == atoms_["CLIPBOARD"]) {
        const bool isGone = notice.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER;
        noteOwner(isGone ? xcb_window_t{XCB_WINDOW_NONE} : notice.owner, notice.timestamp);
    }
}

void X11Pasteboard::noteOwner(xcb_window_t owner, xcb_timestamp_t time) {
    if (owner == owner_.window()) {
        takeovers_ = std::max(0, takeovers_ - 1);
        newOwner_.reset();
        owner_.acquired(time);
    } else if (takeovers_ == 0) { // otherwise it precedes this program's takeover, which has been counted
        owner_.lost();
        newOwner_ = {owner, time};
    }
}

/// Once for all owners of a turn: of those that were replaced within it nothing could be fetched.
void X11Pasteboard::followOwner() {
    const auto owner = std::exchange(newOwner_, std::nullopt);
    if (!owner) {
        return;
    }
    cancelFetch();
    items_.clear();
    if (!findSource_) {
        announce(*owner);
        return;
    }
    findSource_(owner->time, [this, fetch = std::weak_ptr(fetch_), owner = *owner](PasteboardSource source) {
        if (!fetch.expired()) { // nobody has taken the clipboard since
            front_ = std::move(source);
            announce(owner);
        }
    });
}

void X11Pasteboard::announce(const Owner& owner) {
    const auto change = ++changeCount_;
    changes_.notify();
    if (change == changeCount_ && owner.window != XCB_WINDOW_NONE && interest_) {
        time_ = owner.time;
        fetchTargets(); // announces the change at its end
    }
}

/// Takeovers that were under way when the window was destroyed have failed, and will not be confirmed.
void X11Pasteboard::retakeSelection() {
    if (std::exchange(takeovers_, 0) > 0 && owner_.own(owner_.items())) {
        takeovers_ = 1;
    }
}

// Fetching

void X11Pasteboard::cancelFetch() {
    fetch_ = std::make_shared<int>();
    reader_.cancel();
    askAgain_.stop();
    refusals_ = 0;
}

/// A program may take the clipboard a moment before it has contents. False when it has been asked often enough.
bool X11Pasteboard::asksAgain() {
    if (refusals_ == maximumRefusals) {
        return false;
    }
    ++refusals_;
    askAgain_.start(untilAskedAgain);
    return true;
}

std::vector<std::string_view> X11Pasteboard::wanted() const {
    return interest_ ? interest_(types_, source_) : std::vector<std::string_view>();
}

/// Data in units of more than a byte is none of the types that are read.
void X11Pasteboard::requestBytes(std::string_view target, std::function<void(X11SelectionReader::Contents)> done) {
    reader_.request(atoms_[target], time_, bytesLeft(),
                    [done = std::move(done)](X11SelectionReader::Contents contents) {
                        if (!contents.failure && contents.format != 8) {
                            contents = {.failure = Failure::refused};
                        }
                        done(std::move(contents));
                    });
}

void X11Pasteboard::fetchTargets() {
    targets_.clear();
    source_.reset();
    toFetch_.clear();
    fetched_.assign(1, {});
    isRefused_ = false;
    reader_.request(atoms_["TARGETS"], time_, maximumTargetsBytes,
                    [this](const X11SelectionReader::Contents& contents) {
                        if (contents.failure == Failure::refused && asksAgain()) {
                            return;
                        }
                        if (contents.failure || !isListOfTargets(contents, atoms_["TARGETS"])) {
                            publish({});
                            return;
                        }
                        std::vector<xcb_atom_t> offered(contents.bytes.size() / sizeof(xcb_atom_t));
                        std::memcpy(offered.data(), contents.bytes.data(), offered.size() * sizeof(xcb_atom_t));
                        for (const auto atom : offered) {
                            if (const auto name = targetNames_.find(atom); name != targetNames_.end()) {
                                targets_.push_back(name->second);
                            }
                        }
                        types_ = clipboardTargets::typesOf(targets_);
                        fetchWanted();
                    });
}

void X11Pasteboard::fetchWanted() {
    const auto types = wanted();
    const auto wants = [&](std::string_view type) { return std::ranges::find(types, type) != types.end(); };
    if (!source_ && wants(core::pasteboardTypes::source)) {
        fetchSource();
    } else if (wants(core::pasteboardTypes::fileUrl)) {
        fetchUriList();
    } else {
        toFetch_.assign(types.begin(), types.end());
        fetchNext();
    }
}

/// Its text may refuse everything else, which is then not requested.
void X11Pasteboard::fetchSource() {
    const auto target = clipboardTargets::targetFor(core::pasteboardTypes::source, targets_);
    if (!target) {
        source_.emplace();
        fetchWanted();
        return;
    }
    requestBytes(*target, [this](X11SelectionReader::Contents contents) {
        if (isFatal(contents.failure)) {
            publish({});
            return;
        }
        source_.emplace();
        isRefused_ = contents.failure == Failure::refused;
        if (!contents.failure) {
            const std::string_view text(reinterpret_cast<const char*>(contents.bytes.data()), contents.bytes.size());
            if (core::isValidUtf8(text)) {
                *source_ = text;
            }
            fetched_.front().data.emplace(core::pasteboardTypes::source, std::move(contents.bytes));
        }
        fetchWanted();
    });
}

void X11Pasteboard::fetchUriList() {
    const auto target = clipboardTargets::targetFor(core::pasteboardTypes::fileUrl, targets_);
    if (!target) {
        publish({});
        return;
    }
    requestBytes(*target, [this](const X11SelectionReader::Contents& contents) { takeUriList(contents); });
}

void X11Pasteboard::takeUriList(const X11SelectionReader::Contents& contents) {
    if (isFatal(contents.failure)) {
        publish({});
        return;
    }
    const auto list = clipboardTargets::parseUriList(contents.bytes);
    if (list.fileUrls.empty()) {
        types_.erase(std::string(core::pasteboardTypes::fileUrl));
    }
    if (list.url && types_.emplace(core::pasteboardTypes::url).second) {
        const auto bytes = std::as_bytes(std::span(*list.url));
        fetched_.front().data.emplace(core::pasteboardTypes::url, std::vector(bytes.begin(), bytes.end()));
    }
    for (std::size_t i = 0; i < list.fileUrls.size(); ++i) {
        if (i > 0) {
            fetched_.push_back({{std::string(core::pasteboardTypes::fileUrl)}, {}});
        }
        const auto bytes = std::as_bytes(std::span(list.fileUrls[i]));
        fetched_[i].data.emplace(core::pasteboardTypes::fileUrl, std::vector(bytes.begin(), bytes.end()));
    }
    const auto types = wanted();
    toFetch_.assign(types.begin(), types.end());
    fetchNext();
}

void X11Pasteboard::fetchNext() {
    while (!toFetch_.empty()) {
        const auto type = toFetch_.front();
        toFetch_.erase(toFetch_.begin());
        const auto target = clipboardTargets::targetFor(type, targets_);
        if (!target || fetched_.front().data.contains(type)) {
            continue;
        }
        requestBytes(*target, [this, type, target = *target](X11SelectionReader::Contents contents) {
            if (isFatal(contents.failure)) {
                publish({});
                return;
            }
            isRefused_ = isRefused_ || contents.failure == Failure::refused;
            auto data =
                contents.failure ? std::nullopt : clipboardTargets::toUniform(target, std::move(contents.bytes));
            if (data) {
                fetched_.front().data.emplace(type, std::move(*data));
            }
            fetchNext();
        });
        return;
    }
    if (fetched_.front().data.empty() && isRefused_ && asksAgain()) {
        return;
    }
    fetched_.front().types.assign(types_.begin(), types_.end());
    publish(std::exchange(fetched_, {}));
}

std::size_t X11Pasteboard::bytesLeft() const {
    std::size_t taken = 0;
    for (const auto& item : fetched_) {
        for (const auto& [type, bytes] : item.data) {
            taken += bytes->size();
        }
    }
    return core::clipboardSnapshot::maximumBytes - std::min(taken, core::clipboardSnapshot::maximumBytes);
}

void X11Pasteboard::publish(std::vector<Item> items) {
    fetched_.clear();
    items_ = std::move(items);
    changes_.notify();
}

// Reading and writing

std::vector<std::vector<std::string>> X11Pasteboard::itemTypes() const {
    std::vector<std::vector<std::string>> types;
    for (const auto& item : items_) {
        types.push_back(item.types);
    }
    return types;
}

std::optional<core::SharedBytes> X11Pasteboard::data(std::size_t item, std::string_view type) const {
    if (item >= items_.size()) {
        return std::nullopt;
    }
    const auto found = items_[item].data.find(type);
    return found != items_[item].data.end() ? std::optional(found->second) : std::nullopt;
}

std::optional<std::string> X11Pasteboard::string(std::string_view type) const {
    for (const auto& item : items_) {
        if (const auto found = item.data.find(type); found != item.data.end()) {
            const std::string_view text(reinterpret_cast<const char*>(found->second->data()), found->second->size());
            return core::isValidUtf8(text) ? std::optional<std::string>(text) : std::nullopt;
        }
    }
    return std::nullopt;
}

void X11Pasteboard::clear() {
    cancelFetch();
    newOwner_.reset();
    items_.clear();
    ++changeCount_;
    front_.reset();
    if (owner_.own({})) {
        ++takeovers_;
    }
}

bool X11Pasteboard::setString(std::string_view type, std::string_view text) {
    return write({{{}, {{std::string(type), std::string(text)}}}});
}

bool X11Pasteboard::write(std::vector<core::PasteboardItem> items) {
    if (items.empty() || !owner_.own(items)) {
        return false;
    }
    ++takeovers_;
    for (const auto& item : items) {
        auto& readable = items_.emplace_back();
        for (const auto& representation : item.representations) {
            readable.types.push_back(representation.type);
            readable.data.emplace(representation.type, representation.data);
        }
        for (const auto& [type, text] : item.strings) {
            const auto bytes = std::as_bytes(std::span(text));
            readable.types.push_back(type);
            readable.data.emplace(type, std::vector(bytes.begin(), bytes.end()));
        }
    }
    return true;
}

} // namespace quillane
