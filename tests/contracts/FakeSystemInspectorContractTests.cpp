// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/SystemInspectorContract.hpp"
#include "fakes/FakeSystemInspector.hpp"

namespace quillane {
namespace {

class FakeSystemInspectorDriver {
public:
    SystemInspector& inspector() { return fake_; }

private:
    fakes::FakeSystemInspector fake_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, SystemInspectorContract, FakeSystemInspectorDriver);
} // namespace testing
} // namespace quillane
