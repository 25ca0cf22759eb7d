// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/power/MacSleepAssertions.hpp"

#include <IOKit/pwr_mgt/IOPMLib.h>

namespace quillane {

std::variant<core::SleepAssertionID, core::SleepAssertionError>
MacSleepAssertions::create(core::SleepAssertionKind kind) {
    const CFStringRef type = kind == core::SleepAssertionKind::display ? kIOPMAssertionTypePreventUserIdleDisplaySleep
                                                                       : kIOPMAssertionTypePreventUserIdleSystemSleep;
    IOPMAssertionID assertion = kIOPMNullAssertionID;
    const IOReturn code =
        IOPMAssertionCreateWithName(type, kIOPMAssertionLevelOn, CFSTR("Quillane Keep Awake"), &assertion);
    if (code != kIOReturnSuccess) {
        return core::SleepAssertionError{code};
    }
    return core::SleepAssertionID{assertion};
}

void MacSleepAssertions::release(core::SleepAssertionID assertion) {
    IOPMAssertionRelease(assertion);
}

} // namespace quillane
