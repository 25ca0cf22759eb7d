// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ProxySettings.hpp"

namespace quillane {

/// The proxies of the environment when it names any, else those of the desktop's settings (GProxyResolver: GNOME's and
/// KDE's, also automatic configuration, where glib-networking is installed).
class LinuxProxySettings final : public ProxySettings {
public:
    /// Reads the environment.
    LinuxProxySettings();

    [[nodiscard]] std::optional<std::string> proxyFor(const std::string& url) const override;

private:
    bool isInEnvironment_;
};

} // namespace quillane
