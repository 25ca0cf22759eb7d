// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/system/LinuxProxySettings.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <gio/gio.h>

namespace quillane {

namespace {

struct FreeStrings {
    void operator()(char** strings) const { g_strfreev(strings); }
};

/// libcurl's names (CURLOPT_PROXY(3)); HTTP_PROXY is not among them, because it may come from a request's header.
bool environmentNamesAProxy() {
    constexpr std::array names{"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"};
    return std::ranges::any_of(names, [](const char* name) {
        const char* value = std::getenv(name);
        return value != nullptr && *value != '\0';
    });
}

/// GIO's "socks" and "socks5" leave it open who resolves the name; the proxy can.
std::string forCurl(std::string_view proxy) {
    for (const std::string_view socks : {"socks://", "socks5://"}) {
        if (proxy.starts_with(socks)) {
            return "socks5h://" + std::string(proxy.substr(socks.size()));
        }
    }
    return proxy.starts_with("direct:") ? std::string() : std::string(proxy);
}

} // namespace

LinuxProxySettings::LinuxProxySettings(GProxyResolver* resolver)
    : isInEnvironment_(environmentNamesAProxy()), resolver_(resolver) {}

void LinuxProxySettings::forgetHeaderVariable() {
    ::unsetenv("HTTP_PROXY");
}

std::optional<std::string> LinuxProxySettings::proxyFor(const std::string& url) const {
    if (isInEnvironment_) {
        return std::nullopt;
    }
    auto* resolver = resolver_ != nullptr ? resolver_ : g_proxy_resolver_get_default();
    // Errors leave no proxies, which means none, as it does for the desktop's own programs.
    const std::unique_ptr<char*, FreeStrings> proxies(g_proxy_resolver_lookup(resolver, url.c_str(), nullptr, nullptr));
    return proxies && *proxies != nullptr ? forCurl(*proxies) : std::string();
}

} // namespace quillane
