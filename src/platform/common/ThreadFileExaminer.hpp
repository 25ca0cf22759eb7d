// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/FileExaminer.hpp"
#include "core/fileshare/FileShareProtocol.hpp"

#include <chrono>
#include <functional>
#include <memory>

namespace quillane {

class MainQueue;

/// Examines files on threads, one for each file: a disk that hangs, such as the mount of an unreachable file server,
/// blocks neither the main thread nor other files. Its thread is left behind.
class ThreadFileExaminer {
public:
    using Examine = std::function<core::ExaminedFile(const core::Url& file)>;

    struct Limits {
        /// Maximum wait of the main thread, so that an ordinary answer comes inside the call.
        std::chrono::milliseconds moment{50};
        /// Time after which a file whose disk has not answered counts as unreadable.
        std::chrono::milliseconds timeout{60'000};
    };

    /// The queue must outlive this object.
    explicit ThreadFileExaminer(MainQueue& queue);

    /// `examine` runs on threads and may touch only what it owns.
    ThreadFileExaminer(MainQueue& queue, Examine examine, Limits limits);
    ThreadFileExaminer(const ThreadFileExaminer&) = delete;
    ThreadFileExaminer& operator=(const ThreadFileExaminer&) = delete;

    /// Calls no completion from now on.
    ~ThreadFileExaminer();

    /// The examiner must not outlive this object.
    [[nodiscard]] core::FileExaminer examiner();

private:
    class Link;

    MainQueue& queue_;
    Examine examine_;
    Limits limits_;
    std::shared_ptr<Link> link_; ///< shared with the threads
};

/// An examiner that owns its threads' link to the main queue, which must outlive it.
[[nodiscard]] core::FileExaminer makeFileExaminer(MainQueue& queue);

} // namespace quillane
