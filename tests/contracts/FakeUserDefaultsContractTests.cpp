// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "contracts/UserDefaultsContract.hpp"
#include "fakes/FakeUserDefaults.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

class FakeUserDefaultsDriver {
public:
    core::UserDefaults& defaults() { return defaults_; }

    void restart() { defaults_ = fakes::FakeUserDefaults(defaults_.values); }

private:
    fakes::FakeUserDefaults defaults_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, UserDefaultsContract, FakeUserDefaultsDriver);
} // namespace testing
} // namespace quillane
