// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/SystemSymbolsContract.hpp"
#include "platform/linux/shell/LineArtSymbols.hpp"

namespace quillane {
namespace {

class LineArtSymbolsDriver {
public:
    SystemSymbols& symbols() { return symbols_; }

private:
    LineArtSymbols symbols_;
};

} // namespace

namespace testing {

INSTANTIATE_TYPED_TEST_SUITE_P(LineArt, SystemSymbolsContract, LineArtSymbolsDriver);

} // namespace testing
} // namespace quillane
