// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/fileshare/UrlSession.hpp"

#include <memory>

namespace quillane {

class MainQueue;
class ProxySettings;

/// A factory over libcurl that owns its sessions' threads (CurlUrlSessions). The queue must outlive it.
[[nodiscard]] core::UrlSessionFactory makeUrlSessions(MainQueue& queue, std::shared_ptr<const ProxySettings> proxies);

} // namespace quillane
