// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ProxySettings.hpp"

#include <functional>
#include <mutex>
#include <vector>

namespace quillane::fakes {

/// The same proxy for every URL. Records the queries.
class FakeProxySettings final : public ProxySettings {
public:
    explicit FakeProxySettings(std::optional<std::string> proxy = std::string()) : proxy_(std::move(proxy)) {}

    [[nodiscard]] std::optional<std::string> proxyFor(const std::string& url) const override {
        const std::lock_guard lock(mutex_);
        asked_.push_back(url);
        return proxy_;
    }

    [[nodiscard]] std::vector<std::string> asked() const {
        const std::lock_guard lock(mutex_);
        return asked_;
    }

private:
    std::optional<std::string> proxy_;
    mutable std::mutex mutex_; // asked on the threads of transfers
    mutable std::vector<std::string> asked_;
};

} // namespace quillane::fakes
