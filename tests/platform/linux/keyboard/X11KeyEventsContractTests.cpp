// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "contracts/KeyEventsContract.hpp"
#include "platform/linux/keyboard/X11Driver.hpp"
#include "platform/linux/keyboard/X11KeyCodes.hpp"
#include "platform/linux/keyboard/X11KeyEvents.hpp"
#include "platform/linux/keyboard/X11TestKeyboard.hpp"

#include <algorithm>
#include <vector>

namespace quillane {
namespace {

class X11KeyEventsDriver : public testing::X11Driver {
public:
    X11KeyEventsDriver() {
        settle();
        watched_ = session_.input->onKey([this](const X11RawEvent& event) {
            if (event.isPress) {
                pressed_.push_back(x11KeyCodes::macKeyCode(event.detail));
            }
        });
    }

    KeyEvents& events() { return events_; }

    [[nodiscard]] static pid_t target() { return 1; } // whoever has the keyboard

    void holdShift() { user_.press(testing::key::leftShift); }

    void releaseShift() { user_.release(testing::key::leftShift); }

    [[nodiscard]] std::size_t pressesOf(core::KeyCode keyCode) const {
        return static_cast<std::size_t>(std::ranges::count(pressed_, keyCode));
    }

private:
    X11KeyEvents events_{*session_.connection, *session_.keyboard};
    std::vector<core::KeyCode> pressed_;
    core::Subscription watched_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(X11, KeyEventsContract, X11KeyEventsDriver);
} // namespace testing
} // namespace quillane
