// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/StatusItemContract.hpp"

namespace quillane {
namespace {} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, StatusItemContract, FakeStatusItemDriver);
} // namespace testing
} // namespace quillane
