// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace quillane {

/// The proxies that the user has set in the system.
class ProxySettings {
public:
    virtual ~ProxySettings() = default;

    /// The proxy for this http or https URL: an empty text for none, "http://host:port" or "socks5h://host:port". No
    /// value when the environment (http_proxy, https_proxy, all_proxy, no_proxy) decides. Any thread but the main one:
    /// it blocks for as long as the system takes to fetch and run an automatic configuration.
    [[nodiscard]] virtual std::optional<std::string> proxyFor(const std::string& url) const = 0;
};

} // namespace quillane
