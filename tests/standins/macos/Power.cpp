// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/Power.hpp"

#include "standins/macos/Mac.hpp"

using quillane::standin::Mac;

extern "C" {

IOReturn IOPMAssertionCreateWithName(CFStringRef type, IOPMAssertionLevel level, CFStringRef name,
                                     IOPMAssertionID* assertion) {
    auto& power = Mac::current().power;
    if (power.refusal != kIOReturnSuccess) {
        return power.refusal;
    }
    *assertion = ++power.last;
    power.assertions[*assertion] = {quillane::standin::text(type), quillane::standin::text(name), level};
    return kIOReturnSuccess;
}

IOReturn IOPMAssertionRelease(IOPMAssertionID assertion) {
    return Mac::current().power.assertions.erase(assertion) != 0 ? kIOReturnSuccess : kIOReturnNotFound;
}
}
