// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/qt/TerminationSignals.hpp"

#include "core/support/FileDescriptor.hpp"

#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <csignal>

#include <fcntl.h>

namespace quillane {

namespace {

constexpr std::array handledSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler can only use a global (POSIX.1-2017, "Signal Concepts"): the writing end of the pipe.
std::atomic<int> pipeEnd{-1};
static_assert(std::atomic<int>::is_always_lock_free);

void onSignal(int) {
    const char byte = 0;
    [[maybe_unused]] const auto written = ::write(pipeEnd.load(), &byte, 1);
}

} // namespace

class TerminationSignals::Watcher {
public:
    explicit Watcher(std::function<void()> callback) {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) {
            return; // signals keep their default effect
        }
        reading_ = core::FileDescriptor(ends[0]);
        writing_ = core::FileDescriptor(ends[1]);
        for (const int end : ends) {
            ::fcntl(end, F_SETFD, FD_CLOEXEC);
            ::fcntl(end, F_SETFL, O_NONBLOCK);
        }
        pipeEnd = writing_.get();
        notifier_ = std::make_unique<QSocketNotifier>(reading_.get(), QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this, callback = std::move(callback)] {
            notifier_->setEnabled(false);
            callback();
        });

        struct sigaction action {};

        action.sa_handler = onSignal;
        action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
        for (const int signal : handledSignals) {
            ::sigaction(signal, &action, nullptr);
        }
    }

    ~Watcher() {
        for (const int signal : handledSignals) {
            ::signal(signal, SIG_DFL);
        }
        pipeEnd = -1;
    }

private:
    core::FileDescriptor reading_;
    core::FileDescriptor writing_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

TerminationSignals::TerminationSignals(std::function<void()> callback)
    : watcher_(std::make_unique<Watcher>(std::move(callback))) {}

TerminationSignals::~TerminationSignals() = default;

} // namespace quillane
