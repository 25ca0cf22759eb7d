// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/system/MacSystemInspector.hpp"

#include "contracts/SystemInspectorContract.hpp"
#include "platform/macos/MacDriver.hpp"

#import <Carbon/Carbon.h>

namespace quillane {
namespace {

class MacSystemInspectorDriver : public testing::MacDriver {
public:
    SystemInspector& inspector() { return inspector_; }

private:
    MacSystemInspector inspector_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, SystemInspectorContract, MacSystemInspectorDriver);
} // namespace testing
} // namespace quillane
