// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/keyboard/MacHotKeys.hpp"

#include "contracts/HotKeysContract.hpp"
#include "platform/macos/MacDriver.hpp"
#include "platform/macos/MacTestUser.hpp"

#import <Carbon/Carbon.h>

namespace quillane {
namespace {

using fakes::Modifier;

/// The system lets two programs have one key, but no program have it twice: "another" is this program here.
class MacHotKeysDriver : public testing::MacDriver {
public:
    ~MacHotKeysDriver() { giveBack(); }

    [[nodiscard]] static std::string lacking() { return testing::MacTestUser::lacking(); }

    HotKeys& hotKeys() { return hotKeys_; }

    void press() {
        constexpr core::KeyCode keyV = 9;
        user_.press(Modifier::leftCommand);
        user_.press(Modifier::leftShift);
        user_.tap(keyV);
        user_.release(Modifier::leftShift);
        user_.release(Modifier::leftCommand);
    }

    void takeByAnother() {
        constexpr UInt32 keyV = 9;
        EXPECT_EQ(RegisterEventHotKey(keyV, cmdKey | shiftKey, EventHotKeyID{'Test', 1}, GetApplicationEventTarget(), 0,
                                      &other_),
                  noErr);
    }

    void giveBack() {
        if (other_ != nullptr) {
            UnregisterEventHotKey(std::exchange(other_, nullptr));
        }
    }

    void settle() {
        int turns = 0;
        EXPECT_TRUE(waitUntil([&] { return ++turns > 20; }));
    }

private:
    MacHotKeys hotKeys_;
    testing::MacTestUser user_;
    EventHotKeyRef other_ = nullptr;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, HotKeysContract, MacHotKeysDriver);
} // namespace testing
} // namespace quillane
