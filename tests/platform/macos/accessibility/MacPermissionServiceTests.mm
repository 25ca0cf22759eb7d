// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/accessibility/MacPermissionService.hpp"

#include "contracts/PermissionServiceContract.hpp"
#include "platform/macos/MacDriver.hpp"

namespace quillane {
namespace {

/// No program can give or take its own permissions.
class MacPermissionServiceDriver : public testing::MacDriver {
public:
    PermissionService& service() { return service_; }

    static bool set(core::MacPermission, bool) { return false; }

private:
    MacPermissionService service_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, PermissionServiceContract, MacPermissionServiceDriver);
} // namespace testing
} // namespace quillane
