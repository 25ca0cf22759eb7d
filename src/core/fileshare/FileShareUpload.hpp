// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/FileShareError.hpp"
#include "core/fileshare/FileShareServer.hpp"
#include "core/fileshare/UrlSession.hpp"

#include <tl/expected.hpp>

#include <thread>

namespace quillane::core {

/// One upload of one file to one server. Started once and never again: another try is another object. Main thread.
/// Destroying it while it runs ends the transfer without a result.
///
///     FileShareUpload upload(factory);
///     upload.start(file, server, UrlSessionConfiguration{}, showFraction, [](auto link) { ... });
class FileShareUpload final : private UrlSessionDelegate {
public:
    struct Limits {
        std::chrono::milliseconds silence{60'000};  ///< the longest time without any data flowing
        std::chrono::milliseconds whole{3'600'000}; ///< the longest time in all
    };

    using Result = tl::expected<Url, FileShareFailure>;
    /// The fraction of the file that was sent, 0 to 1.
    using Progress = std::function<void(double fraction)>;
    using Completion = std::function<void(const Result& result)>;

    explicit FileShareUpload(UrlSessionFactory factory);
    FileShareUpload(UrlSessionFactory factory, Limits limits);
    FileShareUpload(const FileShareUpload&) = delete;
    FileShareUpload& operator=(const FileShareUpload&) = delete;
    ~FileShareUpload() override;

    /// Sends the file at the file URL. The completion is called exactly once: inside this call when the file cannot be
    /// sent at all, else later. Either callback may destroy this object. Starting twice, or on another thread than the
    /// one that made the object, stops the program.
    void start(const Url& file, const FileShareServer& server, UrlSessionConfiguration configuration, Progress progress,
               Completion completion);

    /// Completes with `UrlError::cancelled`, inside this call; does nothing once completed. On another thread it stops
    /// the program.
    void cancel();

private:
    void didSendBodyData(std::int64_t sent, std::int64_t expected) override;
    void didReceiveData(std::span<const std::byte> data) override;
    void redirectRequested() override;
    void didComplete(std::optional<UrlResponse> response, std::optional<UrlError> error) override;

    void finish(const Result& result);

    UrlSessionFactory factory_;
    Limits limits_;
    std::thread::id thread_ = std::this_thread::get_id();
    std::unique_ptr<UrlSession> session_;
    std::vector<std::byte> responseBody_;
    std::optional<FileShareError> forcedError_; ///< wins over what the session reports
    bool started_ = false;
    bool finished_ = false;
    FileShareServer server_ = FileShareServer::standard();
    Progress progress_;
    Completion completion_;
};

} // namespace quillane::core
