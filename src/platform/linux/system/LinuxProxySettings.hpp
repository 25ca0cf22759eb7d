// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ProxySettings.hpp"

using GProxyResolver = struct _GProxyResolver; // NOLINT(bugprone-reserved-identifier): GIO's

namespace quillane {

/// The proxies of the environment when it names any, else those of the desktop's settings (GProxyResolver: GNOME's and
/// KDE's, also automatic configuration, where glib-networking is installed).
class LinuxProxySettings final : public ProxySettings {
public:
    /// Reads the environment. Without a resolver, GIO's default is used.
    explicit LinuxProxySettings(GProxyResolver* resolver = nullptr);

    /// Removes HTTP_PROXY from the environment: it may come from a request's header, and GIO's libproxy module reads it
    /// all the same. Call it while the process has one thread.
    static void forgetHeaderVariable();

    [[nodiscard]] std::optional<std::string> proxyFor(const std::string& url) const override;

private:
    bool isInEnvironment_;
    GProxyResolver* resolver_; ///< GIO's default when absent
};

} // namespace quillane
