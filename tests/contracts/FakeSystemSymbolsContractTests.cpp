// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/SystemSymbolsContract.hpp"
#include "fakes/FakeSystemSymbols.hpp"

namespace quillane {
namespace {

class FakeSystemSymbolsDriver {
public:
    SystemSymbols& symbols() { return fake_; }

private:
    fakes::FakeSystemSymbols fake_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SystemSymbolsContract, FakeSystemSymbolsDriver);
} // namespace testing
} // namespace quillane
