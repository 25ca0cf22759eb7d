// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/SecretStoreContract.hpp"
#include "fakes/FakeSecretStore.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

using namespace fakes;

class FakeSecretStoreDriver {
public:
    core::SecretStore& store() { return store_; }

    bool lock() {
        store_.failWith(core::SecretStatus::interactionNotAllowed);
        return true;
    }

private:
    fakes::FakeSecretStore store_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SecretStoreContract, FakeSecretStoreDriver);
} // namespace testing
} // namespace quillane
