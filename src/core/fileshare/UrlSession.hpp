// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/UrlError.hpp"
#include "core/support/Url.hpp"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace quillane::core {

struct UrlRequest {
    Url url;
    std::string method = "GET";
    std::chrono::milliseconds timeout{60'000}; ///< maximum time without any data
    std::vector<std::pair<std::string, std::string>> headers;

    bool operator==(const UrlRequest&) const = default;
};

struct UrlResponse {
    int statusCode = 0;

    bool operator==(const UrlResponse&) const = default;
};

/// How a session behaves. The rest is fixed: sessions keep no cookies, credentials or answers, verify certificates,
/// speak http and https only, and fail at once without a network.
struct UrlSessionConfiguration {
    std::chrono::milliseconds requestTimeout{60'000};          ///< maximum time without any data
    std::chrono::milliseconds resourceTimeout{7 * 86'400'000}; ///< maximum time in all
    std::size_t maximumAnswerBytes = std::size_t{1} << 20U;    ///< a longer body ends the transfer
    /// A file of PEM certificates to trust instead of the system's, for private servers.
    std::optional<std::filesystem::path> certificateAuthorities;

    bool operator==(const UrlSessionConfiguration&) const = default;
};

/// What a session reports about its transfer. Main thread, never inside a call to the session. Each of these may
/// destroy the session.
class UrlSessionDelegate {
public:
    virtual ~UrlSessionDelegate() = default;

    /// `sent` bytes of the body have been handed to the network; `expected` is below 1 when the size is not known.
    /// Called at most a few times a second, the last time when all are sent.
    virtual void didSendBodyData(std::int64_t sent, std::int64_t expected) = 0;

    /// More of the answer's body. In total at most the configured maximum, plus one piece of at most 64 KiB that
    /// exceeds it.
    virtual void didReceiveData(std::span<const std::byte> data) = 0;

    /// The answer is a redirect. It is never followed: the transfer completes with this answer.
    virtual void redirectRequested() = 0;

    /// The transfer is over; this is the last call. An error, or the head of the answer, or both if the transfer was
    /// answered but could not be finished. Neither means an answer that is not HTTP.
    virtual void didComplete(std::optional<UrlResponse> response, std::optional<UrlError> error) = 0;
};

/// One transfer. Main thread; no call blocks. Destroying the session cancels the transfer and silences the delegate.
class UrlSession {
public:
    virtual ~UrlSession() = default;

    /// Starts sending the file, which is read from disk piece by piece, as the body of the request. Called once. If the
    /// request has a Content-Length, the file must have that size. The transfer fails with `fileChanged` if the file is
    /// no longer as it was when this was called.
    virtual void upload(const UrlRequest& request, const std::filesystem::path& file) = 0;

    /// Ends the transfer: it completes with `cancelled` unless it has already completed.
    virtual void cancelTask() = 0;
};

/// Makes a session for one transfer. The delegate must outlive the session.
using UrlSessionFactory = std::function<std::unique_ptr<UrlSession>(const UrlSessionConfiguration& configuration,
                                                                    UrlSessionDelegate& delegate)>;

} // namespace quillane::core
