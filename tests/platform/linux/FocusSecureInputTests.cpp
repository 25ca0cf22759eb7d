// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/FocusSecureInput.hpp"

#include "fakes/FakeDesktop.hpp"

#include <gtest/gtest.h>

namespace quillane {
namespace {

TEST(FocusSecureInput, IsOnWhileTheFocusIsOnAPasswordField) {
    fakes::FakeDesktop desktop;
    FocusSecureInput input(desktop.accessibility, desktop.workspace);
    EXPECT_FALSE(input.isEnabled());
    desktop.withFrontApplication("com.example.browser");
    EXPECT_FALSE(input.isEnabled());
    desktop.withFocusedTextField();
    EXPECT_FALSE(input.isEnabled());
    desktop.withFocusedPasswordField();
    EXPECT_TRUE(input.isEnabled());
    desktop.withFrontApplication("com.example.editor").withFocusedTextField();
    EXPECT_FALSE(input.isEnabled());
}

} // namespace
} // namespace quillane
