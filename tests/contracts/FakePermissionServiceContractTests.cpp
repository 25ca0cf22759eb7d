// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/FakeDriver.hpp"
#include "contracts/PermissionServiceContract.hpp"
#include "fakes/FakePermissionService.hpp"

namespace quillane {
namespace {

class FakePermissionServiceDriver {
public:
    PermissionService& service() { return fake_; }

    bool set(core::MacPermission permission, bool granted) {
        granted ? fake_.grant(permission) : fake_.revoke(permission);
        return true;
    }

    static bool waitUntil(const std::function<bool()>& condition) { return testing::askAgain(condition); }

protected:
    fakes::FakePermissionService fake_;
};

/// The permissions are switched on by a request.
class FakePermissionSwitchDriver : public FakePermissionServiceDriver {
public:
    FakePermissionSwitchDriver() { fake_.grantOnRequest(); }
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(FakeSettings, PermissionServiceContract, FakePermissionServiceDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(FakeSwitch, PermissionServiceContract, FakePermissionSwitchDriver);
} // namespace testing
} // namespace quillane
