// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/MacPasteboard.hpp"

#include "platform/PasteboardContract.hpp"
#include "platform/macos/MacDriver.hpp"
#include "platform/macos/MacStrings.hpp"

namespace quillane {
namespace {

/// The general pasteboard of the user who runs the tests; its plain text is put back.
class MacPasteboardDriver : public testing::MacDriver {
public:
    ~MacPasteboardDriver() {
        [general() clearContents];
        if (before_ != nil) {
            [general() setString:before_ forType:NSPasteboardTypeString];
        }
    }

    Pasteboard& pasteboard() { return pasteboard_; }

    void copyText(const std::string& text) {
        [general() clearContents];
        [general() setString:nsString(text) forType:NSPasteboardTypeString];
    }

    void settle() {}

private:
    static NSPasteboard* general() { return NSPasteboard.generalPasteboard; }

    NSString* before_ = [general() stringForType:NSPasteboardTypeString];
    MacPasteboard pasteboard_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, PasteboardContract, MacPasteboardDriver);
} // namespace testing
} // namespace quillane
