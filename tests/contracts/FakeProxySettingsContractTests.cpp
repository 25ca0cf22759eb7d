// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/ProxySettingsContract.hpp"
#include "fakes/FakeProxySettings.hpp"

namespace quillane {
namespace {

class FakeProxySettingsDriver {
public:
    [[nodiscard]] const ProxySettings& settings() const { return fake_; }

private:
    fakes::FakeProxySettings fake_{"http://proxy.example:3128"};
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ProxySettingsContract, FakeProxySettingsDriver);
} // namespace testing
} // namespace quillane
