// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/ProcessProtection.hpp"

#include <gtest/gtest.h>

#include <cstdlib>

#include <sys/resource.h>

namespace quillane {
namespace {

/// Ends with 0 when neither this process nor one that it starts may dump a core.
void reportCoreLimit() {
    protectProcess();
    rlimit core{1, 1};
    const bool isKnown = getrlimit(RLIMIT_CORE, &core) == 0;
    std::_Exit(isKnown && core.rlim_cur == 0 && core.rlim_max == 0 ? 0 : 1);
}

TEST(ProcessProtectionDeathTest, ProtectedProcessDumpsNoCore) {
    EXPECT_EXIT(reportCoreLimit(), ::testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace quillane
