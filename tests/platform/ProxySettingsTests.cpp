// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/LinuxProxySettings.hpp"

#include "platform/ProxySettingsContract.hpp"

#include <gtest/gtest.h>

#include <cstdlib>

namespace quillane {
namespace {

/// An environment without any proxy.
class LinuxProxySettingsTests : public ::testing::Test {
protected:
    void SetUp() override {
        for (const auto* name : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY", "HTTP_PROXY"}) {
            ::unsetenv(name);
        }
    }
};

TEST_F(LinuxProxySettingsTests, WithoutADesktopsSettingsThereIsNoProxy) {
    EXPECT_EQ(LinuxProxySettings().proxyFor("https://files.example/a"), "");
    EXPECT_EQ(LinuxProxySettings().proxyFor("not a URL"), "");
}

TEST_F(LinuxProxySettingsTests, TheEnvironmentDecidesWhenItNamesAProxy) {
    for (const auto* name : {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"}) {
        ::setenv(name, "http://proxy.example:3128", 1);
        EXPECT_EQ(LinuxProxySettings().proxyFor("https://files.example/a"), std::nullopt) << name;
        ::setenv(name, "", 1);
        EXPECT_EQ(LinuxProxySettings().proxyFor("https://files.example/a"), "") << name;
    }
}

TEST_F(LinuxProxySettingsTests, AHeaderThatBecameAVariableIsIgnored) {
    ::setenv("HTTP_PROXY", "http://evil.example:3128", 1);
    EXPECT_EQ(LinuxProxySettings().proxyFor("http://nas/a"), "");
    ::unsetenv("HTTP_PROXY");
}

class LinuxProxySettingsDriver {
public:
    [[nodiscard]] const ProxySettings& settings() const { return settings_; }

private:
    LinuxProxySettings settings_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, ProxySettingsContract, LinuxProxySettingsDriver);
} // namespace testing
} // namespace quillane
