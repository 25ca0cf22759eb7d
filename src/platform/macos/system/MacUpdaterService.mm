// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/system/MacUpdaterService.hpp"

#include "core/support/Listeners.hpp"
#include "platform/macos/foundation/MacCallback.hpp"

#import <Foundation/Foundation.h>

#include <utility>

/// The used part of Sparkle's SPUUpdater and SPUStandardUpdaterController, which are looked up at run time: a build
/// without the framework runs as well.
@protocol QuillaneUpdater <NSObject>
- (BOOL)canCheckForUpdates;
- (NSDate*)lastUpdateCheckDate;
- (BOOL)automaticallyChecksForUpdates;
- (void)setAutomaticallyChecksForUpdates:(BOOL)automatically;
@end

@protocol QuillaneUpdaterController <NSObject>
- (instancetype)initWithStartingUpdater:(BOOL)starting
                        updaterDelegate:(id)updaterDelegate
                     userDriverDelegate:(id)userDriverDelegate;
- (id)updater;
- (void)startUpdater;
- (void)checkForUpdates:(id)sender;
@end

/// Reports on the main thread when an observed property has changed.
@interface QuillaneUpdaterObserver : NSObject
@property(nonatomic) std::function<void()> changed;
@end

@implementation QuillaneUpdaterObserver

- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary*)change
                       context:(void*)context {
    __weak QuillaneUpdaterObserver* observer = self;
    dispatch_async(dispatch_get_main_queue(), ^{
      QuillaneUpdaterObserver* alive = observer;
      if (alive && alive.changed) {
          quillane::guarded(alive.changed);
      }
    });
}

@end

namespace quillane {

namespace {

class MacUpdaterService final : public UpdaterService {
public:
    explicit MacUpdaterService(Class controller)
        : controller_([(id<QuillaneUpdaterController>)[controller alloc] initWithStartingUpdater:NO
                                                                                 updaterDelegate:nil
                                                                              userDriverDelegate:nil]),
          updater_([controller_ updater]),
          observer_([QuillaneUpdaterObserver new]) {
        observer_.changed = [this] { changed_.notify(); };
        for (NSString* key in observedKeys()) {
            [(NSObject*)updater_ addObserver:observer_ forKeyPath:key options:0 context:nullptr];
        }
    }

    ~MacUpdaterService() override {
        observer_.changed = nullptr;
        for (NSString* key in observedKeys()) {
            [(NSObject*)updater_ removeObserver:observer_ forKeyPath:key];
        }
    }

    [[nodiscard]] bool hasKey() const override {
        @autoreleasepool {
            id key = [NSBundle.mainBundle objectForInfoDictionaryKey:@"SUPublicEDKey"];
            return [key isKindOfClass:NSString.class] && [key length] > 0;
        }
    }

    void start() override {
        @autoreleasepool {
            [controller_ startUpdater];
        }
    }

    [[nodiscard]] bool canCheck() const override {
        @autoreleasepool {
            return [updater_ canCheckForUpdates];
        }
    }

    [[nodiscard]] std::optional<core::Date> lastCheck() const override {
        @autoreleasepool {
            NSDate* date = [updater_ lastUpdateCheckDate];
            return date ? std::optional(core::Date{date.timeIntervalSinceReferenceDate}) : std::nullopt;
        }
    }

    [[nodiscard]] bool checksAutomatically() const override {
        @autoreleasepool {
            return [updater_ automaticallyChecksForUpdates];
        }
    }

    void setChecksAutomatically(bool automatically) override {
        @autoreleasepool {
            [updater_ setAutomaticallyChecksForUpdates:automatically];
        }
    }

    void checkForUpdates() override {
        @autoreleasepool {
            [controller_ checkForUpdates:nil];
        }
    }

    core::Subscription onChanged(std::function<void()> callback) override {
        return changed_.subscribe(std::move(callback));
    }

private:
    static NSArray<NSString*>* observedKeys() {
        return @[ @"canCheckForUpdates", @"lastUpdateCheckDate", @"automaticallyChecksForUpdates" ];
    }

    id<QuillaneUpdaterController> controller_;
    id<QuillaneUpdater> updater_;
    QuillaneUpdaterObserver* observer_;
    core::Listeners<> changed_;
};

} // namespace

std::unique_ptr<UpdaterService> makeMacUpdaterService() {
    @autoreleasepool {
        // Absent when the program is not in a bundle; then a class of that name that is already loaded is used.
        NSString* path =
            [NSBundle.mainBundle.privateFrameworksPath stringByAppendingPathComponent:@"Sparkle.framework"];
        if (path) {
            [[NSBundle bundleWithPath:path] load];
        }
        const Class controller = NSClassFromString(@"SPUStandardUpdaterController");
        return controller ? std::make_unique<MacUpdaterService>(controller) : nullptr;
    }
}

} // namespace quillane
