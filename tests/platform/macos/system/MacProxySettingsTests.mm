// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/system/MacProxySettings.hpp"

#include "contracts/ProxySettingsContract.hpp"

namespace quillane {
namespace {

class MacProxySettingsDriver {
public:
    [[nodiscard]] const ProxySettings& settings() const { return settings_; }

private:
    MacProxySettings settings_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, ProxySettingsContract, MacProxySettingsDriver);
} // namespace testing
} // namespace quillane
