// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/curl/CurlTransfer.hpp"

#include "core/support/Utf8.hpp"
#include "platform/common/curl/CurlLibrary.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include <arpa/inet.h>

namespace quillane {

namespace {

using core::UrlError;

constexpr long uploadBufferBytes = 2L << 20U; // libcurl's maximum
constexpr std::size_t maximumHeadBytes = 256U << 10U;
constexpr int maximumPollMilliseconds = 1000;
/// A larger body is announced first (RFC 9110, "Expect: 100-continue"), so that a server can refuse it unsent. A
/// smaller one is sent sooner than the answer could arrive.
constexpr std::int64_t largestUnannouncedBytes = 1 << 20;

using Easy = std::unique_ptr<CURL, decltype(&curl_easy_cleanup)>;
using Multi = std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)>;
using ParsedUrl = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;
using HeaderList = std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)>;
using CurlText = std::unique_ptr<char, decltype(&curl_free)>;

UrlError errorFor(CURLcode code) {
    switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
        return UrlError::timedOut;
    case CURLE_URL_MALFORMAT:
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return UrlError::cannotFindHost;
    case CURLE_COULDNT_CONNECT:
    case CURLE_PROXY:
    case CURLE_INTERFACE_FAILED:
        return UrlError::cannotConnectToHost;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
        return UrlError::serverCertificateUntrusted;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CIPHER:
    case CURLE_USE_SSL_FAILED:
        return UrlError::secureConnectionFailed;
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_SEND_FAIL_REWIND:
    case CURLE_RECV_ERROR:
    case CURLE_PARTIAL_FILE:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
        return UrlError::networkConnectionLost;
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_UNSUPPORTED_PROTOCOL: // an answer in HTTP/0.9
        return UrlError::badServerResponse;
    default:
        return UrlError::unknown;
    }
}

/// Whether an error answer that ended this way still counts as the answer: servers that do not want the body send one
/// and hang up.
bool isHangUp(UrlError error) {
    return error == UrlError::networkConnectionLost;
}

bool isRedirect(int status) {
    switch (status) {
    case 300:
    case 301:
    case 302:
    case 303:
    case 307:
    case 308:
        return true;
    default:
        return false;
    }
}

/// Whether two texts name the same host: the same name in any case, or the same IPv6 address.
bool isSameHost(std::string_view first, std::string_view second) {
    if (first.find(':') == std::string_view::npos) {
        return core::isValidUtf8(second) && core::lowercased(first) == core::lowercased(second);
    }
    if (second.starts_with('[') && second.ends_with(']')) {
        second = second.substr(1, second.size() - 2);
    }
    std::array<unsigned char, 16> firstAddress{};
    std::array<unsigned char, 16> secondAddress{};
    return ::inet_pton(AF_INET6, std::string(first).c_str(), firstAddress.data()) == 1 &&
           ::inet_pton(AF_INET6, std::string(second).c_str(), secondAddress.data()) == 1 &&
           firstAddress == secondAddress;
}

class Transfer {
public:
    Transfer(const CurlLibrary& curl, const CurlTransferRequest& request, UploadSource& source,
             TransferChannel& channel)
        : curl_(curl), request_(request), source_(source), channel_(channel) {}

    void run() {
        if (const auto error = prepare()) {
            channel_.reportCompletion(std::nullopt, *error);
            return;
        }
        channel_.setWaker([this] { curl_.multiWakeUp(multi_.get()); });
        auto code = perform();
        if (code && isExpectationRefused() && prepareWithoutExpectation()) {
            code = perform();
        }
        channel_.setWaker(nullptr);
        if (code) {
            report(*code);
        }
        curl_.multiRemoveHandle(multi_.get(), easy_.get());
    }

private:
    template <typename Value>
    void set(CURLoption option, Value value) {
        isPrepared_ = curl_.easySetOption(easy_.get(), option, value) == CURLE_OK && isPrepared_;
    }

    /// Sets up everything, or returns the reason for the failure.
    std::optional<UrlError> prepare() {
        easy_.reset(curl_.easyInit());
        multi_.reset(curl_.multiInit());
        if (!easy_ || !multi_) {
            return UrlError::unknown;
        }
        if (!prepareUrl()) {
            return UrlError::cannotFindHost;
        }
        prepareLimits();
        prepareRequest();
        prepareCallbacks();
        const bool isAdded = isPrepared_ && curl_.multiAddHandle(multi_.get(), easy_.get()) == CURLM_OK;
        return isAdded ? std::nullopt : std::optional(UrlError::unknown);
    }

    /// Never contacts a host that libcurl parses differently from the checked one ("010.0.0.1" as octal).
    bool prepareUrl() {
        const auto& text = request_.request.url.absoluteString();
        const auto parts = core::UrlComponents::parse(text);
        url_.reset(curl_.url());
        char* host = nullptr;
        if (!url_ || !parts || !parts->host ||
            curl_.urlSet(url_.get(), CURLUPART_URL, text.c_str(), CURLU_PATH_AS_IS) != CURLUE_OK ||
            curl_.urlGet(url_.get(), CURLUPART_HOST, &host, 0) != CURLUE_OK) {
            return false;
        }
        const CurlText owner(host, curl_.free);
        set(CURLOPT_CURLU, url_.get());
        set(CURLOPT_PATH_AS_IS, 1L);
        return isSameHost(*parts->host, host);
    }

    void prepareLimits() {
        isPrepared_ = curl_.allowOnlyHttp(easy_.get()) && isPrepared_;
        set(CURLOPT_FOLLOWLOCATION, 0L);
        set(CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
        set(CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
        set(CURLOPT_HTTP09_ALLOWED, 0L);
        set(CURLOPT_NOSIGNAL, 1L);
        set(CURLOPT_FRESH_CONNECT, 1L);
        set(CURLOPT_FORBID_REUSE, 1L);
        set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
        set(CURLOPT_SSL_VERIFYPEER, 1L);
        set(CURLOPT_SSL_VERIFYHOST, 2L);
        set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
        set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
        // The channel's owner watches the time, also while this thread waits for a disk.
        set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(request_.configuration.resourceTimeout.count()));
        if (const auto& authorities = request_.configuration.certificateAuthorities) {
            set(CURLOPT_CAINFO, authorities->c_str());
            set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
        }
        if (request_.proxy) {
            set(CURLOPT_PROXY, request_.proxy->c_str());
        }
    }

    void prepareRequest() {
        for (const auto& [name, value] : request_.request.headers) {
            if (name != "Content-Length") { // libcurl writes it from the size of the source
                addHeader(std::string(name).append(": ").append(value));
            }
        }
        if (!expectsContinue_) {
            addHeader("Expect:"); // none
        }
        set(CURLOPT_UPLOAD, 1L);
        set(CURLOPT_CUSTOMREQUEST, request_.request.method.c_str());
        set(CURLOPT_HTTPHEADER, headers_.get());
        set(CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(source_.size()));
        set(CURLOPT_UPLOAD_BUFFERSIZE, uploadBufferBytes);
    }

    void addHeader(const std::string& line) {
        auto* list = curl_.listAppend(headers_.get(), line.c_str());
        isPrepared_ = list != nullptr && isPrepared_;
        if (list != nullptr) {
            static_cast<void>(headers_.release()); // becomes part of the new list
            headers_.reset(list);
        }
    }

    /// Whether the server only refuses the expectation (RFC 9110, 417), which calls for another try.
    [[nodiscard]] bool isExpectationRefused() const { return expectsContinue_ && status_ == 417; }

    /// Sets up a second try without the expectation; false on failure.
    bool prepareWithoutExpectation() {
        curl_.multiRemoveHandle(multi_.get(), easy_.get());
        expectsContinue_ = false;
        addHeader("Expect:");
        set(CURLOPT_HTTPHEADER, headers_.get());
        source_.rewind();
        reason_.reset();
        status_ = 0;
        return isPrepared_ && curl_.multiAddHandle(multi_.get(), easy_.get()) == CURLM_OK;
    }

    void prepareCallbacks() {
        set(CURLOPT_READDATA, this);
        set(
            CURLOPT_READFUNCTION, +[](char* buffer, std::size_t size, std::size_t count, void* self) {
                return static_cast<Transfer*>(self)->read({reinterpret_cast<std::byte*>(buffer), size * count});
            });
        set(CURLOPT_SEEKDATA, this);
        set(
            CURLOPT_SEEKFUNCTION, +[](void* self, curl_off_t offset, int origin) {
                return static_cast<Transfer*>(self)->seek(offset, origin);
            });
        set(CURLOPT_HEADERDATA, this);
        set(
            CURLOPT_HEADERFUNCTION, +[](char* line, std::size_t size, std::size_t count, void* self) {
                return static_cast<Transfer*>(self)->takeHeader({line, size * count}) ? size * count : 0;
            });
        set(CURLOPT_WRITEDATA, this);
        set(
            CURLOPT_WRITEFUNCTION, +[](char* data, std::size_t size, std::size_t count, void* self) {
                return static_cast<Transfer*>(self)->takeBody({reinterpret_cast<std::byte*>(data), size * count})
                           ? size * count
                           : 0;
            });
        set(CURLOPT_NOPROGRESS, 0L);
        set(CURLOPT_XFERINFODATA, this);
        set(
            CURLOPT_XFERINFOFUNCTION, +[](void* self, curl_off_t, curl_off_t received, curl_off_t, curl_off_t sent) {
                return static_cast<Transfer*>(self)->noteProgress(received, sent);
            });
    }

    /// Moves data until libcurl is done; none if the channel asked for an end first.
    std::optional<CURLcode> perform() {
        int running = 1;
        while (running > 0) {
            if (channel_.isEnding()) {
                return std::nullopt;
            }
            if (curl_.multiPerform(multi_.get(), &running) != CURLM_OK) {
                return CURLE_FAILED_INIT;
            }
            if (running > 0 &&
                curl_.multiPoll(multi_.get(), nullptr, 0, maximumPollMilliseconds, nullptr) != CURLM_OK) {
                return CURLE_FAILED_INIT;
            }
        }
        int left = 0;
        const auto* message = curl_.multiInfoRead(multi_.get(), &left);
        return message != nullptr ? message->data.result : CURLE_FAILED_INIT;
    }

    void report(CURLcode code) {
        const bool isAnswered = isHeadComplete_ && (status_ >= 200 || code == CURLE_OK);
        const auto response = isAnswered ? std::optional(core::UrlResponse{status_}) : std::nullopt;
        auto error = reason_ ? reason_ : code == CURLE_OK ? std::nullopt : std::optional(errorFor(code));
        const bool isSuccess = status_ >= 200 && status_ <= 299;
        if (!error && status_ > 0 && !isHeadComplete_) {
            error = UrlError::networkConnectionLost; // for libcurl, a head may end with the connection
        }
        if (isRefusedRedirect_ || (response && !isSuccess && error && isHangUp(*error))) {
            error = std::nullopt;
        }
        if (!error && isSuccess) {
            error = reasonToDoubtSuccess();
        }
        channel_.reportCompletion(response, error);
    }

    /// A server that accepts before it has everything, or a file that has changed meanwhile, means that the file has
    /// not arrived.
    std::optional<UrlError> reasonToDoubtSuccess() {
        curl_off_t sent = 0;
        curl_.easyGetInfo(easy_.get(), CURLINFO_SIZE_UPLOAD_T, &sent);
        if (sent < source_.size()) {
            return UrlError::networkConnectionLost;
        }
        return source_.isUnchanged() ? std::nullopt : std::optional(UrlError::fileChanged);
    }

    std::size_t read(std::span<std::byte> buffer) {
        const auto count = source_.read(buffer);
        if (!count || channel_.isEnding()) {
            reason_ = count ? UrlError::cancelled : count.error();
            return CURL_READFUNC_ABORT;
        }
        return *count;
    }

    int seek(curl_off_t offset, int origin) {
        if (offset != 0 || origin != SEEK_SET) {
            return CURL_SEEKFUNC_CANTSEEK;
        }
        source_.rewind();
        return CURL_SEEKFUNC_OK;
    }

    /// Takes one line of a head. False ends the transfer.
    bool takeHeader(std::string_view line) {
        channel_.noteActivity();
        headBytes_ += line.size();
        if (headBytes_ > maximumHeadBytes) {
            reason_ = UrlError::badServerResponse;
            return false;
        }
        if (line.starts_with("HTTP/")) {
            long status = 0;
            curl_.easyGetInfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
            status_ = static_cast<int>(status);
            namesLocation_ = false;
            isHeadComplete_ = false;
        } else if (core::isValidUtf8(line) && core::lowercased(line.substr(0, 9)) == "location:") {
            namesLocation_ = true;
        } else if (line == "\r\n" || line == "\n") {
            isHeadComplete_ = true;
            isRefusedRedirect_ = namesLocation_ && isRedirect(status_);
        }
        if (isRefusedRedirect_) {
            channel_.reportRedirect();
        }
        return !isRefusedRedirect_;
    }

    bool takeBody(std::span<const std::byte> data) {
        channel_.noteActivity();
        if (isExpectationRefused()) {
            return true; // not the answer yet
        }
        bodyBytes_ += data.size();
        channel_.reportData(data);
        if (bodyBytes_ > request_.configuration.maximumAnswerBytes) {
            reason_ = UrlError::dataLengthExceedsMaximum;
            return false;
        }
        return true;
    }

    int noteProgress(curl_off_t received, curl_off_t sent) {
        if (received != received_ || sent != sent_) {
            channel_.noteActivity();
        }
        received_ = received;
        if (sent != sent_) {
            sent_ = sent;
            channel_.reportSent(sent, source_.size());
        }
        return channel_.isEnding() ? 1 : 0;
    }

    const CurlLibrary& curl_;
    const CurlTransferRequest& request_;
    UploadSource& source_;
    TransferChannel& channel_;
    bool isPrepared_ = true;
    bool expectsContinue_ = source_.size() > largestUnannouncedBytes;
    HeaderList headers_{nullptr, curl_.listFreeAll}; // destroyed after the handle that points to it
    ParsedUrl url_{nullptr, curl_.urlCleanup};
    Easy easy_{nullptr, curl_.easyCleanup};
    Multi multi_{nullptr, curl_.multiCleanup};
    int status_ = 0;
    bool isHeadComplete_ = false;
    bool namesLocation_ = false;
    bool isRefusedRedirect_ = false;
    std::optional<UrlError> reason_; ///< why this side ended the transfer
    std::size_t headBytes_ = 0;
    std::size_t bodyBytes_ = 0;
    curl_off_t received_ = 0;
    curl_off_t sent_ = 0;
};

} // namespace

void runCurlTransfer(const CurlTransferRequest& request, UploadSource& source, TransferChannel& channel) {
    const auto* curl = CurlLibrary::load();
    if (curl == nullptr) {
        channel.reportCompletion(std::nullopt, UrlError::unknown);
        return;
    }
    Transfer(*curl, request, source, channel).run();
}

} // namespace quillane
