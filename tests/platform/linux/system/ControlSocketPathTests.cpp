// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/control/ControlSocket.hpp"

#include <gtest/gtest.h>

#include <cstdlib>

namespace quillane {
namespace {

class ControlSocketPathTest : public ::testing::Test {
protected:
    ControlSocketPathTest() { ::setenv("XDG_RUNTIME_DIR", "/run/user/7", 1); }

    ~ControlSocketPathTest() override {
        ::unsetenv("XDG_RUNTIME_DIR");
        ::unsetenv("FLATPAK_ID");
    }
};

TEST_F(ControlSocketPathTest, LiesInTheRuntimeFolder) {
    EXPECT_EQ(controlSocketPath(), "/run/user/7/quillane.sock");
}

TEST_F(ControlSocketPathTest, LiesInTheFolderThatInstancesOfASandboxShare) {
    ::setenv("FLATPAK_ID", "com.quillane.app", 1);
    EXPECT_EQ(controlSocketPath(), "/run/user/7/app/com.quillane.app/quillane.sock");
}

} // namespace
} // namespace quillane
