// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/UrlSession.hpp"
#include "platform/common/curl/UploadSource.hpp"

#include <functional>
#include <memory>

namespace quillane {

class MainQueue;
class ProxySettings;

/// Sessions over libcurl. Every transfer runs on a thread of its own, so that nothing it waits for, such as a name
/// server or a disk, holds up anything else; reports to the delegate are posted to the main queue. Timeouts and
/// cancelling do not depend on that thread: a transfer whose thread is stuck ends in time, and the thread is left
/// behind until it returns.
class CurlUrlSessions {
public:
    using Opener = std::function<OpenedSource(const std::filesystem::path&)>;

    /// The queue must outlive the sessions. The settings and the opener are used on the transfers' threads.
    CurlUrlSessions(MainQueue& queue, std::shared_ptr<const ProxySettings> proxies, Opener opener = openUploadFile);
    CurlUrlSessions(const CurlUrlSessions&) = delete;
    CurlUrlSessions& operator=(const CurlUrlSessions&) = delete;

    /// Waits for the threads of finished transfers, at most a second.
    ~CurlUrlSessions();

    /// The factory must not outlive this object.
    [[nodiscard]] core::UrlSessionFactory factory();

private:
    class Threads;

    MainQueue& queue_;
    std::shared_ptr<const ProxySettings> proxies_; ///< shared with the threads, as is what follows
    Opener opener_;
    std::shared_ptr<Threads> threads_;
};

} // namespace quillane
