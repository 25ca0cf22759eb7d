// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/system/MacUpdaterService.hpp"

#include "contracts/UpdaterServiceContract.hpp"
#include "platform/macos/MacDriver.hpp"

#include <stdexcept>

/// The update framework's updater as far as it is used: nothing is fetched, and a check ends when a test says so.
@interface QuillaneTestUpdater : NSObject
@property(nonatomic) BOOL canCheckForUpdates;
@property(nonatomic) NSDate* lastUpdateCheckDate;
@property(nonatomic) BOOL automaticallyChecksForUpdates;
@property(nonatomic) int checks;
@end

@implementation QuillaneTestUpdater
@end

namespace {
__weak QuillaneTestUpdater* newestUpdater = nil;
} // namespace

/// Has the name of the framework's class, which the service looks up and the test program does not link.
@interface SPUStandardUpdaterController : NSObject
@property(nonatomic) QuillaneTestUpdater* updater;
@end

@implementation SPUStandardUpdaterController

- (instancetype)initWithStartingUpdater:(BOOL)starting
                        updaterDelegate:(id)updaterDelegate
                     userDriverDelegate:(id)userDriverDelegate {
    self = [super init];
    _updater = [[QuillaneTestUpdater alloc] init];
    newestUpdater = _updater;
    return self;
}

- (void)startUpdater {
    _updater.canCheckForUpdates = YES;
}

- (void)checkForUpdates:(id)sender {
    _updater.checks += 1;
    _updater.canCheckForUpdates = NO;
}

@end

namespace quillane {
namespace {

class MacUpdaterDriver : public testing::MacDriver {
public:
    MacUpdaterDriver() {
        if (!service_) {
            throw std::runtime_error("no updater");
        }
    }

    UpdaterService& updater() { return *service_; }

    [[nodiscard]] static int checks() { return newestUpdater.checks; }

    static void finish(core::Date date) {
        newestUpdater.lastUpdateCheckDate =
            [NSDate dateWithTimeIntervalSinceReferenceDate:date.secondsSinceReferenceDate];
        newestUpdater.canCheckForUpdates = YES;
    }

private:
    std::unique_ptr<UpdaterService> service_ = makeMacUpdaterService();
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, UpdaterServiceContract, MacUpdaterDriver);
} // namespace testing
} // namespace quillane
