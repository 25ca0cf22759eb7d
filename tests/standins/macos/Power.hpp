// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <IOKit/pwr_mgt/IOPMLib.h>

#include <map>
#include <string>

namespace quillane::standin {

/// The power assertions of this process.
class PowerManagement {
public:
    struct Assertion {
        std::string type;
        std::string name;
        IOPMAssertionLevel level;
    };

    std::map<IOPMAssertionID, Assertion> assertions;
    IOReturn refusal = kIOReturnSuccess; ///< of every new assertion
    IOPMAssertionID last = 0x8000;
};

} // namespace quillane::standin
