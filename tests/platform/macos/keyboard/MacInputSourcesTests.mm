// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/keyboard/MacInputSources.hpp"

#include "contracts/InputSourcesContract.hpp"
#include "platform/macos/MacDriver.hpp"
#include "platform/macos/foundation/CFRef.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#include <Carbon/Carbon.h>

namespace quillane {
namespace {

/// The sources of the user who runs the tests, of which two or more must be enabled; the one in use is restored.
class MacInputSourcesDriver : public testing::MacDriver {
public:
    ~MacInputSourcesDriver() {
        if (before_) {
            static_cast<void>(sources_.select(before_->id));
        }
    }

    InputSources& sources() { return sources_; }

    void switchFromOutside(const std::string& id) {
        NSDictionary* filter = @{(__bridge NSString*)kTISPropertyInputSourceID : nsString(id)};
        const auto found = CFRef<CFArrayRef>::adopt(TISCreateInputSourceList((__bridge CFDictionaryRef)filter, false));
        ASSERT_TRUE(found && CFArrayGetCount(found.get()) > 0) << id;
        TISSelectInputSource(static_cast<TISInputSourceRef>(const_cast<void*>(CFArrayGetValueAtIndex(found.get(), 0))));
    }

private:
    MacInputSources sources_;
    std::optional<InputSource> before_ = sources_.current();
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, InputSourcesContract, MacInputSourcesDriver);
} // namespace testing
} // namespace quillane
