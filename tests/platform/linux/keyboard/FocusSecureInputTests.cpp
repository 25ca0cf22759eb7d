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

TEST(FocusSecureInput, IsUnknownWhileTheApplicationInFrontDoesNotSayWhatHasTheFocus) {
    fakes::FakeDesktop desktop;
    FocusSecureInput input(desktop.accessibility, desktop.workspace);
    EXPECT_TRUE(input.isKnown()) << "nothing is in front";
    desktop.withFrontApplication("com.example.terminal");
    EXPECT_FALSE(input.isKnown()) << "it has no tree";
    desktop.withFocusedPasswordField();
    EXPECT_TRUE(input.isKnown());
    const auto front = desktop.workspace.frontmostApplication()->pid;
    desktop.accessibility.focus(front, nullptr);
    EXPECT_FALSE(input.isKnown()) << "nothing in its tree has the focus";
    desktop.withFocusedPasswordField();
    desktop.accessibility.stopAnswering(front);
    EXPECT_FALSE(input.isKnown());
    EXPECT_FALSE(input.isEnabled());
    desktop.accessibility.answerAgain(front);
    EXPECT_TRUE(input.isKnown());
    EXPECT_TRUE(input.isEnabled());
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
