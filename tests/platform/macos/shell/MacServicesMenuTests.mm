// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/shell/MacServicesMenu.hpp"

#include "contracts/ServicesMenuContract.hpp"
#include "platform/macos/MacDriver.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#import <Carbon/Carbon.h>

@protocol ShareProvider
- (void)share:(NSPasteboard*)pasteboard userData:(NSString*)userData error:(NSString* __autoreleasing _Nullable*)error;
@end

namespace quillane {
namespace {

/// Calls the provider as the Services menu of another application does, over a pasteboard of its own.
class MacServicesMenuDriver : public testing::MacDriver {
public:
    ServicesMenu& menu() { return menu_; }

    [[nodiscard]] static bool isOffered() { return NSApp.servicesProvider != nil; }

    static std::optional<std::string> choose(const std::vector<std::string>& urls) {
        NSPasteboard* pasteboard = [NSPasteboard pasteboardWithUniqueName];
        NSMutableArray<NSURL*>* files = [NSMutableArray array];
        for (const auto& url : urls) {
            [files addObject:[NSURL URLWithString:nsString(url)]];
        }
        [pasteboard clearContents];
        [pasteboard writeObjects:files];
        NSString* error = nil;
        [(id<ShareProvider>)NSApp.servicesProvider share:pasteboard userData:nil error:&error];
        [pasteboard releaseGlobally];
        return error ? std::optional(utf8(error)) : std::nullopt;
    }

private:
    MacServicesMenu menu_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, ServicesMenuContract, MacServicesMenuDriver);
} // namespace testing
} // namespace quillane
