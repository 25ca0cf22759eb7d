// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Connection.hpp"

#include "platform/linux/x11/X11Xkb.hpp"

#include <chrono>
#include <csignal>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <xcb/res.h>
#include <xcb/sync.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace quillane {

namespace {

constexpr std::chrono::seconds retryInterval{1};
constexpr std::chrono::milliseconds closeTimeout{500};
constexpr std::chrono::milliseconds turnLength{5};
constexpr std::size_t maximumReceived = 128; ///< events read ahead of those that are dispatched

bool isPresent(xcb_connection_t* connection, xcb_extension_t* extension) {
    const auto* data = xcb_get_extension_data(connection, extension);
    return data != nullptr && data->present != 0;
}

/// Announces the versions that are used, as each extension demands before its first request.
X11Extensions queryExtensions(xcb_connection_t* c) {
    for (auto* extension : {&xcb_input_id, &xcb_xkb_id, &xcb_sync_id, &xcb_test_id, &xcb_xfixes_id, &xcb_res_id}) {
        xcb_prefetch_extension_data(c, extension);
    }
    X11Extensions found;
    if (isPresent(c, &xcb_input_id)) {
        const XReply<xcb_input_xi_query_version_reply_t> version(
            xcb_input_xi_query_version_reply(c, xcb_input_xi_query_version(c, 2, 2), nullptr));
        if (version && (version->major_version > 2 || (version->major_version == 2 && version->minor_version >= 2))) {
            found.xinputOpcode = xcb_get_extension_data(c, &xcb_input_id)->major_opcode;
            found.xinputFirstEvent = xcb_get_extension_data(c, &xcb_input_id)->first_event;
        }
    }
    if (isPresent(c, &xcb_xkb_id)) {
        const XReply<xcb_xkb_use_extension_reply_t> used(
            xcb_xkb_use_extension_reply(c, xcb_xkb_use_extension(c, 1, 0), nullptr));
        if (used && used->supported != 0) {
            found.xkbFirstEvent = xcb_get_extension_data(c, &xcb_xkb_id)->first_event;
        }
    }
    if (isPresent(c, &xcb_sync_id)) {
        const XReply<xcb_sync_initialize_reply_t> version(
            xcb_sync_initialize_reply(c, xcb_sync_initialize(c, 3, 1), nullptr));
        if (version && (version->major_version > 3 || (version->major_version == 3 && version->minor_version >= 1))) {
            found.syncFirstEvent = xcb_get_extension_data(c, &xcb_sync_id)->first_event;
        }
    }
    found.hasXTest = isPresent(c, &xcb_test_id);
    if (isPresent(c, &xcb_res_id)) {
        const XReply<xcb_res_query_version_reply_t> version(
            xcb_res_query_version_reply(c, xcb_res_query_version(c, 1, 2), nullptr));
        found.hasClientIds = version && (version->server_major > 1 || version->server_minor >= 2);
    }
    if (isPresent(c, &xcb_xfixes_id)) {
        const XReply<xcb_xfixes_query_version_reply_t> version(
            xcb_xfixes_query_version_reply(c, xcb_xfixes_query_version(c, 5, 0), nullptr));
        found.hasXFixes = version != nullptr;
        found.xfixesFirstEvent = version ? xcb_get_extension_data(c, &xcb_xfixes_id)->first_event : std::uint8_t{0};
    }
    return found;
}

} // namespace

/// A thread that waits for the server cannot be interrupted. It shares this state, so it may end after everybody who
/// asked.
struct X11Connection::Reopening {
    Reopening() : finished(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

    Reopening(const Reopening&) = delete;
    Reopening& operator=(const Reopening&) = delete;

    ~Reopening() { close(finished); }

    const int finished; ///< readable once `link` has been decided
    std::mutex mutex;
    std::optional<Link> link;
};

tl::expected<std::unique_ptr<X11Connection>, std::string> X11Connection::open(const std::string& display) {
    // XCB's writes raise the signal when the server has closed the socket; the error is enough.
    if (struct sigaction action{}; sigaction(SIGPIPE, nullptr, &action) == 0 && action.sa_handler == SIG_DFL) {
        action.sa_handler = SIG_IGN;
        sigaction(SIGPIPE, &action, nullptr);
    }
    auto link = connectAndWait(display);
    if (!link) {
        return tl::unexpected(link.error());
    }
    return std::unique_ptr<X11Connection>(new X11Connection(display, std::move(*link)));
}

X11Connection::X11Connection(std::string display, Link link) : display_(std::move(display)), link_(std::move(link)) {
    drain_.setSingleShot(true);
    drain_.callOnTimeout([this] { process(); });
    retry_.setSingleShot(true);
    retry_.callOnTimeout([this] { startReopening(); });
    watch();
}

X11Connection::~X11Connection() {
    if (lost_) {
        return;
    }
    // The server ignores the last requests when the connection is closed at once.
    const auto end = std::chrono::steady_clock::now() + closeTimeout;
    const auto cookie = xcb_get_input_focus(raw());
    xcb_flush(raw());
    void* reply = nullptr;
    while (xcb_poll_for_reply(raw(), cookie.sequence, &reply, nullptr) == 0 && waitForInput(end)) {
    }
    std::free(reply);
}

bool X11Connection::waitForInput(std::chrono::steady_clock::time_point end) const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now()).count();
    pollfd descriptor{xcb_get_file_descriptor(raw()), POLLIN, 0};
    return left > 0 && poll(&descriptor, 1, static_cast<int>(left)) > 0;
}

tl::expected<X11Connection::Link, std::string> X11Connection::connectAndWait(const std::string& display) {
    int screenNumber = 0;
    Link link;
    link.connection.reset(xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber));
    auto* c = link.connection.get();
    if (xcb_connection_has_error(c) != 0) {
        const char* environment = std::getenv("DISPLAY");
        return tl::unexpected("cannot open display " +
                              (display.empty() ? std::string(environment ? environment : "") : display));
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(c));
    for (; screens.rem > 1 && screenNumber > 0; --screenNumber) {
        xcb_screen_next(&screens);
    }
    link.root = screens.data->root;
    link.extensions = queryExtensions(c);
    if (xcb_connection_has_error(c) != 0) {
        return tl::unexpected(std::string("the X server closed the connection"));
    }
    return link;
}

void X11Connection::watch() {
    notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(raw()), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { process(); });
    drain_.start(0); // events that arrived while the connection was made
}

void X11Connection::selectRootEvents(std::uint32_t eventMask) {
    rootMask_ |= eventMask;
    if (!lost_) {
        xcb_change_window_attributes(raw(), root(), XCB_CW_EVENT_MASK, &rootMask_);
        flush();
    }
}

void X11Connection::flush() {
    if (lost_) {
        return;
    }
    if (xcb_flush(raw()) <= 0) {
        notifier_->setEnabled(false); // XCB has closed the socket
    }
    // XCB reads while it waits to write, and what it has read no longer makes the socket readable.
    if (!isProcessing_) {
        drain_.start(0);
    }
}

bool X11Connection::process() {
    const auto end = std::chrono::steady_clock::now() + turnLength;
    const bool wasProcessing = std::exchange(isProcessing_, true); // a handler may wait for answers
    const bool isDone = dispatchUntil(end);
    isProcessing_ = wasProcessing;
    if (lost_) {
        failPending();
    } else if (xcb_connection_has_error(raw()) != 0) {
        lose();
    } else if (!isDone) {
        drain_.start(0);
    }
    return isDone;
}

/// False when time runs out first.
bool X11Connection::dispatchUntil(std::chrono::steady_clock::time_point end) {
    bool hasTime = true;
    bool again = true;
    while (again && hasTime && !lost_) {
        xcb_flush(raw()); // first, because it may read: the last round finds nothing to send and nothing to do
        again = false;
        while (hasTime && !lost_ && dispatchNext()) {
            again = true;
            hasTime = std::chrono::steady_clock::now() < end;
        }
        if (!lost_ && (again || !hasTime)) {
            turns_.notify();
        }
    }
    if (!hasTime && !lost_) {
        xcb_flush(raw());
    }
    return hasTime || lost_;
}

/// Dispatches the next event or reply in the server's order. False when there is none.
bool X11Connection::dispatchNext() {
    if (received_.empty()) {
        receive();
    }
    if (!answer_) {
        takeAnswer();
    }
    // An event carries the number of the last request that was executed before it. Without an answer, everything that
    // has been received precedes the reply, because there was none yet when it was looked for.
    const bool isEventFirst =
        !received_.empty() &&
        (!answer_ || static_cast<std::int32_t>(received_.front()->full_sequence - answer_->request.sequence) < 0);
    if (isEventFirst) {
        dispatchEvent();
    } else if (answer_) {
        dispatchAnswer();
    } else {
        return false;
    }
    return true;
}

void X11Connection::receive() {
    while (received_.size() < maximumReceived) {
        auto* event = xcb_poll_for_event(raw());
        if (event == nullptr) {
            return;
        }
        received_.emplace_back(event);
    }
}

void X11Connection::takeAnswer() {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (pending_.empty() || xcb_poll_for_reply(raw(), pending_.front().sequence, &reply, &error) == 0) {
        return;
    }
    const XReply<xcb_generic_error_t> ownedError(error);
    answer_.emplace(Answer{std::move(pending_.front()), XReply<void>(reply)});
    pending_.pop_front();
    while (auto* event = xcb_poll_for_queued_event(raw())) {
        received_.emplace_back(event);
    }
}

void X11Connection::dispatchEvent() {
    const auto event = std::move(received_.front());
    received_.pop_front();
    const auto type = event->response_type & 0x7f;
    const bool isSent = (event->response_type & 0x80) != 0;
    if (!isSent || type == XCB_SELECTION_NOTIFY || type == XCB_CLIENT_MESSAGE) {
        events_.notify(*event);
    }
}

void X11Connection::dispatchAnswer() {
    const auto answer = std::move(*answer_);
    answer_.reset();
    if (!answer.request.owner.expired()) {
        answer.request.handler(answer.reply.get());
    }
}

void X11Connection::enqueue(Pending pending) {
    pending_.push_back(std::move(pending));
    if (lost_) {
        drain_.start(0); // never answer inside the call
    }
}

void X11Connection::failPending() {
    if (answer_) {
        dispatchAnswer();
    }
    for (const auto& pending : std::exchange(pending_, {})) {
        if (!pending.owner.expired()) {
            pending.handler(nullptr);
        }
    }
}

void X11Connection::lose() {
    lost_ = true;
    notifier_.reset();
    received_.clear();
    failPending();
    losses_.notify();
    startReopening();
}

void X11Connection::startReopening() {
    reopening_ = std::make_shared<Reopening>();
    reopeningNotifier_ = std::make_unique<QSocketNotifier>(reopening_->finished, QSocketNotifier::Read);
    QObject::connect(reopeningNotifier_.get(), &QSocketNotifier::activated, reopeningNotifier_.get(),
                     [this] { finishReopening(); });
    std::thread([state = reopening_, display = display_] {
        auto link = connectAndWait(display);
        const std::lock_guard lock(state->mutex);
        if (link) {
            state->link = std::move(*link);
        }
        eventfd_write(state->finished, 1);
    }).detach();
}

void X11Connection::finishReopening() {
    reopeningNotifier_->setEnabled(false);
    reopeningNotifier_.release()->deleteLater(); // it is the caller
    const auto finished = std::exchange(reopening_, nullptr);
    const std::lock_guard lock(finished->mutex);
    if (!finished->link) {
        retry_.start(retryInterval);
        return;
    }
    failPending();
    link_ = std::move(*finished->link);
    lost_ = false;
    watch();
    if (rootMask_ != 0) {
        selectRootEvents(0);
    }
    openings_.notify();
}

bool X11Connection::settle(std::chrono::milliseconds timeout) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    bool isDone = process();
    while ((!pending_.empty() || answer_) && !lost_) {
        if (isDone ? !waitForInput(end) : std::chrono::steady_clock::now() >= end) {
            return false;
        }
        isDone = process();
    }
    return !lost_;
}

std::vector<xcb_atom_t> X11Connection::internAtoms(std::span<const std::string_view> names) {
    std::vector<xcb_intern_atom_cookie_t> cookies;
    for (const auto name : names) {
        cookies.push_back(xcb_intern_atom(raw(), 0, static_cast<std::uint16_t>(name.size()), name.data()));
    }
    std::vector<xcb_atom_t> atoms;
    for (const auto cookie : cookies) {
        const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(raw(), cookie, nullptr));
        atoms.push_back(reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE});
    }
    drain_.start(0); // events in between
    return atoms;
}

} // namespace quillane
