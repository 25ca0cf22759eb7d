// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/keyboard/MacKeyEvents.hpp"

#include "contracts/KeyEventsContract.hpp"
#include "platform/macos/MacTestUser.hpp"
#include "platform/macos/MacTestWindow.hpp"

#include <map>

#include <unistd.h>

namespace quillane {
namespace {

using fakes::Modifier;

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

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, KeyEventsContract, MacKeyEventsDriver);
} // namespace testing
} // namespace quillane
