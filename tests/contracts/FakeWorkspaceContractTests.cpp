// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/FakeDriver.hpp"
#include "contracts/WorkspaceContract.hpp"
#include "fakes/FakeDesktop.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

using namespace fakes;

class FakeWorkspaceDriver : public testing::FakeDriver {
public:
    static constexpr std::string_view first = "com.apple.TextEdit";
    static constexpr std::string_view second = "com.apple.Notes";

    Workspace& workspace() { return desktop_.workspace; }

    pid_t open(std::string_view bundleID) {
        desktop_.withFrontApplication(std::string(bundleID));
        return desktop_.frontPid();
    }

    void activate(pid_t pid) { desktop_.workspace.activate(pid); }
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, WorkspaceContract, FakeWorkspaceDriver);
} // namespace testing
} // namespace quillane
