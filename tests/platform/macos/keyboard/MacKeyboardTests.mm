// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/keyboard/MacEventTap.hpp"
#include "platform/macos/keyboard/MacHotKeys.hpp"
#include "platform/macos/keyboard/MacKeyEvents.hpp"

#include "contracts/EventTapContract.hpp"
#include "contracts/HotKeysContract.hpp"
#include "contracts/KeyEventsContract.hpp"
#include "platform/macos/MacTestUser.hpp"
#include "platform/macos/MacTestWindow.hpp"

#include <map>
#include <stdexcept>

#include <unistd.h>

namespace quillane {
namespace {

using fakes::Modifier;

/// What a layout types for a key with Shift (Carbon, UnicodeUtilities.h).
std::u16string shiftedText(TISInputSourceRef source, core::KeyCode key) {
    const auto data =
        cfCast<CFDataRef>(TISGetInputSourceProperty(source, kTISPropertyUnicodeKeyLayoutData), CFDataGetTypeID());
    if (!data) {
        throw std::runtime_error("the input source has no layout");
    }
    UInt32 deadKeys = 0;
    UniCharCount count = 0;
    std::array<UniChar, 4> text{};
    UCKeyTranslate(reinterpret_cast<const UCKeyboardLayout*>(CFDataGetBytePtr(data)), key, kUCKeyActionDown,
                   shiftKey >> 8, LMGetKbdType(), kUCKeyTranslateNoDeadKeysMask, &deadKeys, text.size(), &count,
                   text.data());
    return {text.begin(), text.begin() + static_cast<std::ptrdiff_t>(count)};
}

class MacEventTapDriver : public testing::MacWindowDriver {
public:
    [[nodiscard]] std::string lacking() const {
        return hebrew_ ? testing::MacTestUser::lacking() : "the Hebrew input source is not enabled";
    }

    EventTap& tap() { return tap_; }

    void press(auto key) { user_.press(key); }

    void release(auto key) { user_.release(key); }

    void click() {
        const auto middle = window_.geometry().center();
        user_.click(CGPointMake(middle.x(), middle.y()));
    }

    void scroll() { user_.scroll(); }

    [[nodiscard]] std::u16string text() const { return field_.text().toStdU16String(); }

    [[nodiscard]] std::u16string ownText(core::KeyCode key) const { return shiftedText(hebrew_.get(), key); }

private:
    testing::MacInputSource hebrew_{CFSTR("he")};
    MacEventTap tap_;
    testing::MacTestUser user_;
};

class MacKeyEventsDriver : public testing::MacWindowDriver {
public:
    MacKeyEventsDriver() {
        monitor_ = [NSEvent addLocalMonitorForEventsMatchingMask:NSEventMaskKeyDown
                                                         handler:^NSEvent*(NSEvent* event) {
                                                           ++presses_[event.keyCode];
                                                           return event;
                                                         }];
    }

    ~MacKeyEventsDriver() { [NSEvent removeMonitor:monitor_]; }

    [[nodiscard]] static std::string lacking() { return testing::MacTestUser::lacking(); }

    KeyEvents& events() { return events_; }

    [[nodiscard]] static pid_t target() { return getpid(); }

    void holdShift() { user_.press(Modifier::leftShift); }

    void releaseShift() { user_.release(Modifier::leftShift); }

    std::size_t pressesOf(core::KeyCode keyCode) { return presses_[keyCode]; }

private:
    MacKeyEvents events_;
    testing::MacTestUser user_;
    std::map<core::KeyCode, std::size_t> presses_;
    id monitor_ = nil;
};

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
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, EventTapContract, MacEventTapDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, KeyEventsContract, MacKeyEventsDriver);
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, HotKeysContract, MacHotKeysDriver);
} // namespace testing
} // namespace quillane
