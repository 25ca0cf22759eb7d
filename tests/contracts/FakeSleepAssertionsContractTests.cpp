// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/SleepAssertionsContract.hpp"
#include "fakes/FakeSleepAssertions.hpp"

namespace quillane {
namespace {

class FakeSleepAssertionsDriver {
public:
    core::SleepAssertionClient& client() { return fake_; }

    [[nodiscard]] bool holds(const std::multiset<core::SleepAssertionKind>& kinds) const {
        return fake_.held() == kinds;
    }

private:
    fakes::FakeSleepAssertions fake_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SleepAssertionsContract, FakeSleepAssertionsDriver);
} // namespace testing
} // namespace quillane
