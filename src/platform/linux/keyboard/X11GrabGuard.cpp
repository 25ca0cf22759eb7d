// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/keyboard/X11GrabGuard.hpp"

#include "platform/linux/x11/X11GrabWatch.hpp"

#include <QObject>

#include <algorithm>
#include <array>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>

#include <xcb/xinput.h>

namespace quillane {

namespace {

using Clock = X11GrabWatch::Clock;

constexpr std::chrono::milliseconds untilAsked{150};
constexpr std::chrono::milliseconds untilLetGo{300};
constexpr std::chrono::milliseconds untilReconnected{1000};
constexpr int mostQuestions = 10; ///< at one grab: it may be another program's, which holds the keyboard as it likes

} // namespace

struct X11GrabGuard::Shared : std::enable_shared_from_this<Shared> {
    explicit Shared(std::string name)
        : display(std::move(name)),
          wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
          receiver(std::make_unique<QObject>()) {}

    const std::string display;
    const core::FileDescriptor wake;
    std::mutex mutex;                  ///< guards the following
    std::unique_ptr<QObject> receiver; ///< in the main thread; none once the guard has gone
    std::function<void()> onLetGo;
    xcb_connection_t* connection = nullptr; ///< that keys are grabbed on; none while they are not
    xcb_window_t root = XCB_WINDOW_NONE;
    std::uint16_t master = 0;
    bool answered = false;              ///< the loop has turned since the last question
    bool letGo = false;                 ///< and the main thread does not know yet
    std::optional<std::uint32_t> until; ///< number of the request that let go last

    [[nodiscard]] bool hasEnded() {
        const std::lock_guard lock(mutex);
        return receiver == nullptr;
    }

    [[nodiscard]] bool isArmed() {
        const std::lock_guard lock(mutex);
        return connection != nullptr;
    }

    void wakeThread() const { eventfd_write(wake.get(), 1); }

    /// Has the loop say that it turns.
    void ask() {
        const std::lock_guard lock(mutex);
        answered = false;
        post([this] {
            const std::lock_guard answer(mutex);
            answered = true;
        });
    }

    void letGoUnlessAnswered() {
        const std::lock_guard lock(mutex);
        if (answered || connection == nullptr) {
            return;
        }
        auto* const c = std::exchange(connection, nullptr);
        constexpr std::uint32_t any = XCB_INPUT_MODIFIER_MASK_ANY;
        xcb_input_xi_passive_ungrab_device(c, root, XCB_GRAB_ANY, master, 1, XCB_INPUT_GRAB_TYPE_KEYCODE, &any);
        const auto released =
            xcb_input_xi_allow_events(c, XCB_CURRENT_TIME, master, XCB_INPUT_EVENT_MODE_REPLAY_DEVICE, 0, XCB_NONE);
        xcb_input_xi_ungrab_device(c, XCB_CURRENT_TIME, master);
        xcb_flush(c);
        until = released.sequence;
        letGo = true;
        post([this] {
            if (onLetGo) {
                onLetGo();
            }
        });
    }

private:
    /// The main thread calls it, unless the guard has gone by then.
    void post(std::function<void()> call) {
        if (receiver) {
            QMetaObject::invokeMethod(
                receiver.get(), [alive = shared_from_this(), call = std::move(call)] { call(); }, Qt::QueuedConnection);
        }
    }
};

/// What the thread does.
class X11GrabGuard::Watcher {
public:
    explicit Watcher(std::shared_ptr<Shared> shared) : shared_(std::move(shared)) {}

    /// Until the guard has gone.
    void run() {
        while (!shared_->hasEnded()) {
            follow();
            std::array<pollfd, 2> sources{
                {{shared_->wake.get(), POLLIN, 0}, {isConnected() ? watch_->descriptor() : -1, POLLIN, 0}}};
            poll(sources.data(), sources.size(), static_cast<int>(timeout().count()));
            eventfd_t wakes = 0;
            eventfd_read(shared_->wake.get(), &wakes);
            if (isConnected()) {
                watch_->read();
                questionLoop();
            }
        }
    }

private:
    [[nodiscard]] bool isConnected() const { return watch_ && !watch_->isLost(); }

    /// Watches while keys are grabbed, on a new connection if need be.
    void follow() {
        const bool wasArmed = std::exchange(isArmed_, shared_->isArmed());
        if (isArmed_ && !isConnected()) {
            watch_.emplace(shared_->display.empty() ? nullptr : shared_->display.c_str());
        } else if (isArmed_ == wasArmed) {
            return;
        }
        if (isConnected()) {
            watch_->listen(isArmed_);
        }
        seen_.reset();
        grab_.reset();
        if (isArmed_) { // a press may have been held back before this thread listened
            questionFrom(Clock::now(), mostQuestions - 1);
        }
    }

    /// Asks the loop from then on, as if this many questions had been asked.
    void questionFrom(std::optional<Clock::time_point> grab, int questions) {
        grab_ = grab;
        begin_ = grab.value_or(Clock::time_point());
        questions_ = questions;
        isAsked_ = false;
    }

    void questionLoop() {
        if (watch_->grabbedSince() != seen_) {
            seen_ = watch_->grabbedSince();
            questionFrom(seen_, 0);
        }
        if (!isWaiting() || Clock::now() < next()) {
            return;
        }
        if (!isAsked_) {
            shared_->ask();
        } else {
            shared_->letGoUnlessAnswered();
            begin_ = Clock::now();
            ++questions_;
        }
        isAsked_ = !isAsked_;
    }

    [[nodiscard]] bool isWaiting() const { return isArmed_ && grab_ && questions_ < mostQuestions; }

    [[nodiscard]] Clock::time_point next() const { return begin_ + (isAsked_ ? untilLetGo : untilAsked); }

    [[nodiscard]] std::chrono::milliseconds timeout() const {
        if (isArmed_ && !isConnected()) {
            return untilReconnected;
        }
        return isWaiting() ? std::max(std::chrono::ceil<std::chrono::milliseconds>(next() - Clock::now()),
                                      std::chrono::milliseconds{0})
                           : std::chrono::milliseconds{-1};
    }

    std::shared_ptr<Shared> shared_;
    std::optional<X11GrabWatch> watch_;
    bool isArmed_ = false;
    std::optional<Clock::time_point> seen_; ///< when the keyboard was seen being taken
    std::optional<Clock::time_point> grab_; ///< the same, or when it may have been taken unseen
    Clock::time_point begin_;               ///< of this question: the grab, or the question before
    bool isAsked_ = false;
    int questions_ = 0;
};

X11GrabGuard::X11GrabGuard(X11Connection& connection, std::function<void()> onLetGo)
    : connection_(connection),
      process_(connection.display()),
      shared_(std::make_shared<Shared>(connection.display())),
      losses_(connection.onLost([this] {
          disarm();
          window_ = XCB_WINDOW_NONE;
          const std::lock_guard lock(shared_->mutex);
          shared_->until.reset(); // the next connection counts from the beginning
          shared_->letGo = false;
      })) {
    shared_->onLetGo = std::move(onLetGo);
}

X11GrabGuard::~X11GrabGuard() {
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->connection = nullptr;
        shared_->receiver.reset();
    }
    shared_->wakeThread();
}

void X11GrabGuard::arm(std::uint16_t master) {
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->connection = connection_.raw();
        shared_->root = connection_.root();
        shared_->master = master;
    }
    if (!std::exchange(hasThread_, true)) {
        std::thread([shared = shared_] { Watcher(shared).run(); }).detach();
    }
    shared_->wakeThread();
    if (!std::exchange(isArmed_, true)) {
        process_.guard(window());
    }
}

/// What names the connection to the server, which accepts nothing less than something that exists.
xcb_window_t X11GrabGuard::window() {
    if (window_ == XCB_WINDOW_NONE) {
        window_ = xcb_generate_id(connection_.raw());
        xcb_create_window(connection_.raw(), 0, window_, connection_.root(), -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        connection_.flush();
    }
    return window_;
}

void X11GrabGuard::disarm() {
    if (!std::exchange(isArmed_, false)) {
        return;
    }
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->connection = nullptr;
    }
    shared_->wakeThread();
    process_.guard(0);
}

bool X11GrabGuard::mayAnswer(std::uint32_t sequence) {
    const std::lock_guard lock(shared_->mutex);
    if (shared_->until && static_cast<std::int32_t>(sequence - *shared_->until) < 0) {
        return false;
    }
    shared_->answered = true;
    return true;
}

bool X11GrabGuard::takeLetGo() {
    const std::lock_guard lock(shared_->mutex);
    return std::exchange(shared_->letGo, false);
}

} // namespace quillane
