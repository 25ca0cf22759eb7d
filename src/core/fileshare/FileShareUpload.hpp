// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/FileExaminer.hpp"
#include "core/fileshare/FileShareServer.hpp"
#include "core/fileshare/UrlSession.hpp"
#include "core/support/Lifetime.hpp"

#include <tl/expected.hpp>

#include <memory>
#include <thread>

namespace quillane::core {

/// One upload of one file to one server. Can be started once: another try is another object. Main thread. Destroying it
/// while it runs ends the transfer without a result.
///
///     FileShareUpload upload(sessions, examiner);
///     upload.start(file, server, UrlSessionConfiguration{}, showFraction, [](auto link) { ... });
class FileShareUpload final : private UrlSessionDelegate {
public:
    struct Limits {
        std::chrono::milliseconds silence{60'000};  ///< maximum time without any data
        std::chrono::milliseconds whole{3'600'000}; ///< maximum time in all
    };

    using Result = tl::expected<Url, FileShareFailure>;
    /// The fraction of the file that was sent, 0 to 1.
    using Progress = std::function<void(double fraction)>;
    using Completion = std::function<void(const Result& result)>;

    FileShareUpload(UrlSessionFactory factory, FileExaminer examiner);
    FileShareUpload(UrlSessionFactory factory, FileExaminer examiner, Limits limits);
    FileShareUpload(const FileShareUpload&) = delete;
    FileShareUpload& operator=(const FileShareUpload&) = delete;
    ~FileShareUpload() override;

    /// Sends the file at the file URL as soon as it has been examined. The completion is called exactly once: inside
    /// this call when the disk reports at once that it cannot be sent, otherwise later. Either callback may destroy
    /// this object. Starting twice, or on a thread other than the one that made the object, stops the program.
    void start(const Url& file, const FileShareServer& server, UrlSessionConfiguration configuration, Progress progress,
               Completion completion);

    /// Completes with `UrlError::cancelled`, inside this call; does nothing once completed. On another thread it stops
    /// the program.
    void cancel();

    /// The size of the file in bytes; none until it has been examined, and when the disk does not report it.
    [[nodiscard]] std::optional<std::uintmax_t> fileSize() const { return fileSize_; }

private:
    void didSendBodyData(std::int64_t sent, std::int64_t expected) override;
    void didReceiveData(std::span<const std::byte> data) override;
    void redirectRequested() override;
    void didComplete(std::optional<UrlResponse> response, std::optional<UrlError> error) override;

    void send(const ExaminedFile& file, const UrlSessionConfiguration& configuration);
    void finish(const Result& result);

    UrlSessionFactory factory_;
    FileExaminer examiner_;
    Limits limits_;
    std::thread::id thread_ = std::this_thread::get_id();
    std::unique_ptr<UrlSession> session_;
    std::optional<std::uintmax_t> fileSize_;
    std::vector<std::byte> responseBody_;
    std::optional<FileShareError> forcedError_; ///< wins over what the session reports
    bool started_ = false;
    bool finished_ = false;
    FileShareServer server_ = FileShareServer::standard();
    Progress progress_;
    Completion completion_;
    Lifetime lifetime_;
};

} // namespace quillane::core
