// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/keyboard/FocusSecureInput.hpp"

#include "contracts/SecureInputContract.hpp"
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

class FocusSecureInputDriver {
public:
    FocusSecureInputDriver() { desktop_.withFrontApplication("com.example.browser").withFocusedTextField(); }

    SecureInput& input() { return input_; }

    void beginPassword() { desktop_.withFocusedPasswordField(); }

    void endPassword() { desktop_.withFocusedTextField(); }

private:
    fakes::FakeDesktop desktop_;
    FocusSecureInput input_{desktop_.accessibility, desktop_.workspace};
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Focus, SecureInputContract, FocusSecureInputDriver);
} // namespace testing
} // namespace quillane
