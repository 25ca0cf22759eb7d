// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/shell/MacSystemSymbols.hpp"

#include "contracts/SystemSymbolsContract.hpp"
#include "platform/macos/MacDriver.hpp"

namespace quillane {
namespace {

class MacSystemSymbolsDriver : public testing::MacDriver {
public:
    SystemSymbols& symbols() { return symbols_; }

private:
    MacSystemSymbols symbols_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, SystemSymbolsContract, MacSystemSymbolsDriver);
} // namespace testing
} // namespace quillane
