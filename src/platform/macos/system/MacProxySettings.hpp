// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ProxySettings.hpp"

namespace quillane {

/// The proxies of the Network settings (CFNetwork), automatic configuration included.
class MacProxySettings final : public ProxySettings {
public:
    [[nodiscard]] std::optional<std::string> proxyFor(const std::string& url) const override;
};

} // namespace quillane
