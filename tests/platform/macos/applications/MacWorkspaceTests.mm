// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/applications/MacWorkspace.hpp"

#include "contracts/WorkspaceContract.hpp"
#include "platform/macos/MacDriver.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#include <memory>
#include <string_view>
#include <vector>

namespace quillane {
namespace {

/// Opens two small applications that come with macOS; they must not be running, and are ended with the test.
class MacWorkspaceDriver : public testing::MacDriver {
public:
    static constexpr std::string_view first = "com.apple.calculator";
    static constexpr std::string_view second = "com.apple.Chess";

    ~MacWorkspaceDriver() {
        for (NSRunningApplication* application in opened_) {
            [application forceTerminate];
            waitUntil([&] { return application.terminated == YES; });
        }
    }

    Workspace& workspace() { return workspace_; }

    pid_t open(std::string_view bundleID) {
        NSWorkspace* system = NSWorkspace.sharedWorkspace;
        NSURL* address = [system URLForApplicationWithBundleIdentifier:nsString(bundleID)];
        const auto opened = std::make_shared<NSRunningApplication*>(nil);
        [system openApplicationAtURL:address
                       configuration:[NSWorkspaceOpenConfiguration configuration]
                   completionHandler:^(NSRunningApplication* application, NSError*) {
                     *opened = application;
                   }];
        if (!waitUntil([&] { return *opened != nil; })) {
            return -1;
        }
        [opened_ addObject:*opened];
        return (*opened).processIdentifier;
    }

    void activate(pid_t pid) {
        NSRunningApplication* application = [NSRunningApplication runningApplicationWithProcessIdentifier:pid];
        [application activateWithOptions:NSApplicationActivateIgnoringOtherApps];
    }

private:
    MacWorkspace workspace_{false};
    NSMutableArray<NSRunningApplication*>* opened_ = [NSMutableArray array];
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, WorkspaceContract, MacWorkspaceDriver);
} // namespace testing
} // namespace quillane
