// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/ThreadFileExaminer.hpp"

#include "platform/MainQueue.hpp"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace quillane {

namespace {

using Completion = std::function<void(const core::ExaminedFile&)>;

/// One examination, shared by the main thread and the thread that asks the disk.
class Examination {
public:
    explicit Examination(Completion completion) : completion_(std::move(completion)) {}

    /// Main thread: the answer if it comes in time; none means that the main thread continues without it.
    std::optional<core::ExaminedFile> wait(std::chrono::milliseconds limit) {
        std::unique_lock lock(mutex_);
        answered_.wait_for(lock, limit, [this] { return answer_.has_value(); });
        isLate_ = !answer_;
        return answer_;
    }

    /// The other thread: true if the main thread has continued and needs the answer posted.
    bool answer(core::ExaminedFile file) {
        const std::lock_guard lock(mutex_);
        answer_ = std::move(file);
        answered_.notify_one();
        return isLate_;
    }

    /// Main thread: completes the examination unless it is complete.
    void complete(const core::ExaminedFile& file) {
        if (const auto completion = std::exchange(completion_, nullptr)) {
            completion(file);
        }
    }

private:
    std::mutex mutex_;
    std::condition_variable answered_;
    std::optional<core::ExaminedFile> answer_;
    bool isLate_ = false;
    Completion completion_;
};

} // namespace

/// The way back to the main thread, while there is one.
class ThreadFileExaminer::Link {
public:
    explicit Link(MainQueue& queue) : queue_(&queue) {}

    void close() {
        const std::lock_guard lock(mutex_);
        queue_ = nullptr;
    }

    void post(MainQueue::Task task) {
        const std::lock_guard lock(mutex_);
        if (queue_ != nullptr) {
            queue_->post(std::move(task));
        }
    }

private:
    std::mutex mutex_;
    MainQueue* queue_;
};

ThreadFileExaminer::ThreadFileExaminer(MainQueue& queue)
    : ThreadFileExaminer(queue, core::fileShareProtocol::examine, Limits{}) {}

ThreadFileExaminer::ThreadFileExaminer(MainQueue& queue, Examine examine, Limits limits)
    : queue_(queue), examine_(std::move(examine)), limits_(limits), link_(std::make_shared<Link>(queue)) {}

ThreadFileExaminer::~ThreadFileExaminer() {
    link_->close();
}

core::FileExaminer ThreadFileExaminer::examiner() {
    return [this](const core::Url& file, Completion completion) {
        const core::ExaminedFile unreadable = tl::unexpected(core::FileShareError::unreadableFile);
        const auto examination = std::make_shared<Examination>(std::move(completion));
        try {
            std::thread([file, examine = examine_, examination, link = link_] {
                const auto answer = examine(file);
                if (examination->answer(answer)) {
                    link->post([examination, answer] { examination->complete(answer); });
                }
            }).detach();
        } catch (const std::system_error&) { // no thread can be started
            examination->complete(unreadable);
            return;
        }
        if (const auto answer = examination->wait(limits_.moment)) {
            examination->complete(*answer);
        } else {
            queue_.postAfter(limits_.timeout, [examination, unreadable] { examination->complete(unreadable); });
        }
    };
}

core::FileExaminer makeFileExaminer(MainQueue& queue) {
    const auto examiner = std::make_shared<ThreadFileExaminer>(queue); // owned by the function
    return [examiner, examine = examiner->examiner()](const core::Url& file,
                                                      std::function<void(const core::ExaminedFile&)> completion) {
        examine(file, std::move(completion));
    };
}

} // namespace quillane
