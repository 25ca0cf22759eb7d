// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ProxySettings.hpp"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace quillane::testing {

/// What every ProxySettings promises, whatever is set. The driver is constructed for each test and has `const
/// ProxySettings& settings();`.
template <typename Driver>
class ProxySettingsContract : public ::testing::Test {
protected:
    [[nodiscard]] bool isAnswer(const std::string& url) const {
        const auto proxy = driver.settings().proxyFor(url);
        return !proxy || proxy->empty() || proxy->starts_with("http://") || proxy->starts_with("socks5h://");
    }

    Driver driver;
};

TYPED_TEST_SUITE_P(ProxySettingsContract);

TYPED_TEST_P(ProxySettingsContract, AnswersNoneOrAnAddressForAnyTextOnAnyThread) {
    std::vector<std::thread> threads;
    for (const auto* url : {"https://files.example/a", "http://nas/a", "http://[::1]:8080/", "not a URL", "", "%zz"}) {
        threads.emplace_back([this, url] { EXPECT_TRUE(this->isAnswer(url)) << url; });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

TYPED_TEST_P(ProxySettingsContract, TheAnswerIsTheSameWhileNothingChanges) {
    const std::string url = "https://files.example/a";
    EXPECT_EQ(this->driver.settings().proxyFor(url), this->driver.settings().proxyFor(url));
}

REGISTER_TYPED_TEST_SUITE_P(ProxySettingsContract, AnswersNoneOrAnAddressForAnyTextOnAnyThread,
                            TheAnswerIsTheSameWhileNothingChanges);

} // namespace quillane::testing
