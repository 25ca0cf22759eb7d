// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/curl/CurlUrlSessions.hpp"

#include "platform/MainQueue.hpp"
#include "platform/ProxySettings.hpp"
#include "platform/common/curl/CurlTransfer.hpp"
#include "platform/common/curl/UrlSessions.hpp"

#include <algorithm>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace quillane {

namespace {

constexpr std::chrono::seconds endTimeout{1};

/// The size that the request declares, if any.
std::optional<std::string> promisedSize(const core::UrlRequest& request) {
    const auto found =
        std::ranges::find(request.headers, "Content-Length", [](const auto& header) { return header.first; });
    return found == request.headers.end() ? std::nullopt : std::optional(found->second);
}

/// A broken pipe is an error of the writing call, not the end of the program.
void blockBrokenPipeSignal() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void send(CurlTransferRequest& transfer, const std::filesystem::path& file, const CurlUrlSessions::Opener& opener,
          const ProxySettings& proxies, TransferChannel& channel) {
    const auto source = opener(file);
    if (!source) {
        channel.reportCompletion(std::nullopt, source.error());
        return;
    }
    const auto promised = promisedSize(transfer.request);
    if (promised && *promised != std::to_string((*source)->size())) {
        channel.reportCompletion(std::nullopt, core::UrlError::fileChanged);
        return;
    }
    transfer.proxy = proxies.proxyFor(transfer.request.url.absoluteString());
    runCurlTransfer(transfer, **source, channel);
}

} // namespace

/// Counts the threads that run.
class CurlUrlSessions::Threads {
public:
    void enter() {
        const std::lock_guard lock(mutex_);
        ++running_;
    }

    void leave() {
        const std::lock_guard lock(mutex_);
        --running_;
        changed_.notify_all();
    }

    void waitForAll(std::chrono::milliseconds limit) {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, limit, [this] { return running_ == 0; });
    }

    /// Runs the task on a thread of its own; false when no thread can be started.
    template <typename Task>
    static bool run(const std::shared_ptr<Threads>& threads, Task task) {
        threads->enter();
        try {
            std::thread([threads, task = std::move(task)]() mutable {
                task();
                task = Task();
                threads->leave();
            }).detach();
            return true;
        } catch (const std::system_error&) {
            threads->leave();
            return false;
        }
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int running_ = 0;
};

namespace {

class CurlUrlSession final : public core::UrlSession {
public:
    using Start = std::function<bool(std::function<void()>)>;

    CurlUrlSession(MainQueue& queue, core::UrlSessionConfiguration configuration, core::UrlSessionDelegate& delegate,
                   std::shared_ptr<const ProxySettings> proxies, CurlUrlSessions::Opener opener, Start start)
        : queue_(queue),
          configuration_(std::move(configuration)),
          proxies_(std::move(proxies)),
          opener_(std::move(opener)),
          start_(std::move(start)),
          channel_(std::make_shared<TransferChannel>(queue, delegate)) {}

    ~CurlUrlSession() override { channel_->close(); }

    void upload(const core::UrlRequest& request, const std::filesystem::path& file) override {
        const auto begin = TransferChannel::Clock::now();
        const auto silence = std::min(request.timeout, configuration_.requestTimeout);
        const auto interval =
            std::clamp<std::chrono::milliseconds>(std::min(silence, configuration_.resourceTimeout) / 8,
                                                  std::chrono::milliseconds(10), std::chrono::milliseconds(1000));
        channel_->noteActivity();
        watch_ = queue_.repeat(interval, [this, begin, silence] {
            const auto now = TransferChannel::Clock::now();
            if (now - channel_->lastActivity() >= silence || now - begin >= configuration_.resourceTimeout) {
                end(core::UrlError::timedOut);
            }
        });
        const bool isStarted = start_([transfer = CurlTransferRequest{request, configuration_, {}}, file,
                                       opener = opener_, proxies = proxies_, channel = channel_]() mutable {
            blockBrokenPipeSignal();
            send(transfer, file, opener, *proxies, *channel);
        });
        if (!isStarted) {
            end(core::UrlError::unknown);
        }
    }

    void cancelTask() override { end(core::UrlError::cancelled); }

private:
    void end(core::UrlError error) {
        watch_.cancel();
        channel_->reportCompletion(std::nullopt, error);
    }

    MainQueue& queue_;
    core::UrlSessionConfiguration configuration_;
    std::shared_ptr<const ProxySettings> proxies_;
    CurlUrlSessions::Opener opener_;
    Start start_;
    std::shared_ptr<TransferChannel> channel_; ///< shared with the thread
    core::Subscription watch_;
};

} // namespace

CurlUrlSessions::CurlUrlSessions(MainQueue& queue, std::shared_ptr<const ProxySettings> proxies, Opener opener)
    : queue_(queue), proxies_(std::move(proxies)), opener_(std::move(opener)), threads_(std::make_shared<Threads>()) {}

CurlUrlSessions::~CurlUrlSessions() {
    threads_->waitForAll(endTimeout);
}

core::UrlSessionFactory CurlUrlSessions::factory() {
    return [this](const core::UrlSessionConfiguration& configuration, core::UrlSessionDelegate& delegate) {
        return std::make_unique<CurlUrlSession>(
            queue_, configuration, delegate, proxies_, opener_,
            [threads = threads_](std::function<void()> task) { return Threads::run(threads, std::move(task)); });
    };
}

core::UrlSessionFactory makeUrlSessions(MainQueue& queue, std::shared_ptr<const ProxySettings> proxies) {
    const auto sessions = std::make_shared<CurlUrlSessions>(queue, std::move(proxies)); // owned by the function
    return [sessions, make = sessions->factory()](const core::UrlSessionConfiguration& configuration,
                                                  core::UrlSessionDelegate& delegate) {
        return make(configuration, delegate);
    };
}

} // namespace quillane
