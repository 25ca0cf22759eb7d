// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/clipboard/MacPasteboard.hpp"

#include "contracts/PasteboardContract.hpp"
#include "core/clipboard/PasteboardTypes.hpp"
#include "platform/macos/MacDriver.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#include <gmock/gmock.h>

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

    static std::string fileUrl(const std::filesystem::path& file) {
        NSURL* url = [NSURL fileURLWithFileSystemRepresentation:file.c_str() isDirectory:NO relativeToURL:nil];
        return utf8(url.fileReferenceURL.absoluteString);
    }

    void settle() {}

private:
    static NSPasteboard* general() { return NSPasteboard.generalPasteboard; }

    NSString* before_ = [general() stringForType:NSPasteboardTypeString];
    MacPasteboard pasteboard_;
};

TEST(MacPasteboardTypes, AreThoseOfAppKit) {
    namespace types = core::pasteboardTypes;
    EXPECT_EQ(utf8(NSPasteboardTypeString), types::string);
    EXPECT_EQ(utf8(NSPasteboardTypeRTF), types::rtf);
    EXPECT_EQ(utf8(NSPasteboardTypeHTML), types::html);
    EXPECT_EQ(utf8(NSPasteboardTypeURL), types::url);
    EXPECT_EQ(utf8(NSPasteboardTypePNG), types::png);
    EXPECT_EQ(utf8(NSPasteboardTypeTIFF), types::tiff);
    EXPECT_EQ(utf8(NSPasteboardTypeFileURL), types::fileUrl);
}

TEST(MacPasteboardOwnTypes, NameALegacyMarkerAsItWasWritten) {
    MacPasteboardDriver driver;
    [NSPasteboard.generalPasteboard declareTypes:@[ @"Pasteboard generator type" ] owner:nil];
    [NSPasteboard.generalPasteboard setString:@"x" forType:@"Pasteboard generator type"];
    EXPECT_THAT(driver.pasteboard().ownTypes(), ::testing::Contains("Pasteboard generator type"));
}

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, PasteboardContract, MacPasteboardDriver);
} // namespace testing
} // namespace quillane
