// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/SecureInputContract.hpp"
#include "fakes/FakeSecureInput.hpp"

namespace quillane {
namespace {

class FakeSecureInputDriver {
public:
    SecureInput& input() { return fake_; }

    void beginPassword() { fake_.setEnabled(true); }

    void endPassword() { fake_.setEnabled(false); }

private:
    fakes::FakeSecureInput fake_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SecureInputContract, FakeSecureInputDriver);
} // namespace testing
} // namespace quillane
