// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/system/MacUserDefaults.hpp"

#include "contracts/UserDefaultsContract.hpp"

#include <memory>

#import <Foundation/Foundation.h>

namespace quillane {
namespace {

/// The domain is that of the test program, whose property list is linked into it.
class MacUserDefaultsDriver {
public:
    MacUserDefaultsDriver() { forget(); }

    ~MacUserDefaultsDriver() { forget(); }

    MacUserDefaultsDriver(const MacUserDefaultsDriver&) = delete;
    MacUserDefaultsDriver& operator=(const MacUserDefaultsDriver&) = delete;

    core::UserDefaults& defaults() { return *defaults_; }

    void restart() { defaults_ = std::make_unique<MacUserDefaults>(); }

private:
    static void forget() {
        [NSUserDefaults.standardUserDefaults removePersistentDomainForName:NSBundle.mainBundle.bundleIdentifier];
    }

    std::unique_ptr<MacUserDefaults> defaults_ = std::make_unique<MacUserDefaults>();
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, UserDefaultsContract, MacUserDefaultsDriver);
} // namespace testing
} // namespace quillane
