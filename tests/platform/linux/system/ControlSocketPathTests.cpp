// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/common/control/ControlSocket.hpp"

#include "support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace quillane {
namespace {

class ControlSocketPathTest : public ::testing::Test {
protected:
    ControlSocketPathTest() { ::setenv("XDG_RUNTIME_DIR", files_.path().c_str(), 1); }

    ~ControlSocketPathTest() override {
        ::unsetenv("XDG_RUNTIME_DIR");
        ::unsetenv("FLATPAK_ID");
    }

    [[nodiscard]] std::filesystem::path runtimeFolder() const { return files_.path(); }

private:
    live::TemporaryFolder files_;
};

TEST_F(ControlSocketPathTest, LiesInTheRuntimeFolder) {
    EXPECT_EQ(controlSocketPath(), runtimeFolder() / "quillane.sock");
}

TEST_F(ControlSocketPathTest, LiesInTheFolderThatInstancesOfASandboxShare) {
    ::setenv("FLATPAK_ID", "com.quillane.app", 1);
    EXPECT_EQ(controlSocketPath(), runtimeFolder() / "app/com.quillane.app/quillane.sock");
}

} // namespace
} // namespace quillane
