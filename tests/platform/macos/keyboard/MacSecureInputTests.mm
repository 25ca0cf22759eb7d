// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/keyboard/MacSecureInput.hpp"

#include "contracts/SecureInputContract.hpp"
#include "platform/macos/MacDriver.hpp"

#import <Carbon/Carbon.h>

namespace quillane {
namespace {

/// Turns secure input on as a password field does; the system counts it for each process and ends it with this one.
class MacSecureInputDriver : public testing::MacDriver {
public:
    SecureInput& input() { return input_; }

    static void beginPassword() { EnableSecureEventInput(); }

    static void endPassword() { DisableSecureEventInput(); }

private:
    MacSecureInput input_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, SecureInputContract, MacSecureInputDriver);
} // namespace testing
} // namespace quillane
