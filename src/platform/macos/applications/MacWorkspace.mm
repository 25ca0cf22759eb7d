// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/applications/MacWorkspace.hpp"

#include "core/support/Listeners.hpp"
#include "platform/macos/foundation/MacCallback.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>

#include <utility>

#include <unistd.h>

/// Handles the Apple event that asks a running application to open again.
@interface QuillaneReopenHandler : NSObject
@property(nonatomic) std::function<void()> reopened;
- (void)handleReopen:(NSAppleEventDescriptor*)event withReply:(NSAppleEventDescriptor*)reply;
@end

@implementation QuillaneReopenHandler

- (void)handleReopen:(NSAppleEventDescriptor*)event withReply:(NSAppleEventDescriptor*)reply {
    quillane::guarded(_reopened);
}

@end

namespace quillane {

namespace {

RunningApplication value(NSRunningApplication* application) {
    RunningApplication result{.pid = application.processIdentifier, .name = utf8(application.localizedName)};
    if (application.bundleIdentifier) {
        result.bundleID = utf8(application.bundleIdentifier);
    }
    return result;
}

/// Whether the Apple event that is being handled opens the application as a login item.
bool isOpenedAsLoginItem() {
    NSAppleEventDescriptor* event = NSAppleEventManager.sharedAppleEventManager.currentAppleEvent;
    return event.eventClass == kCoreEventClass && event.eventID == kAEOpenApplication &&
           [event paramDescriptorForKeyword:keyAEPropData].enumCodeValue == keyAELaunchedAsLogInItem;
}

} // namespace

struct MacWorkspace::State {
    bool atLogin = false;
    core::Listeners<> activated;
    core::Listeners<> woken;
    core::Listeners<> reopened;
};

/// The tokens of the notification centres, removed on destruction.
class MacWorkspace::Observers {
public:
    explicit Observers(const std::shared_ptr<State>& state) {
        NSNotificationCenter* workspace = NSWorkspace.sharedWorkspace.notificationCenter;
        listen(workspace, NSWorkspaceDidActivateApplicationNotification, NSOperationQueue.mainQueue, state,
               [](State& notified) { notified.activated.notify(); });
        listen(workspace, NSWorkspaceDidWakeNotification, NSOperationQueue.mainQueue, state,
               [](State& notified) { notified.woken.notify(); });
        // Without a queue the block runs while the Apple event is handled.
        listen(NSNotificationCenter.defaultCenter, NSApplicationDidFinishLaunchingNotification, nil, state,
               [this](State& notified) {
                   notified.atLogin = notified.atLogin || isOpenedAsLoginItem();
                   handleReopen(); // AppKit's own handlers are in place by now and do not replace this one
               });
        reopenHandler_.reopened = [weak = std::weak_ptr(state)] {
            if (const auto strong = weak.lock()) {
                strong->reopened.notify();
            }
        };
    }

    ~Observers() {
        for (const auto& [center, token] : tokens_) {
            [center removeObserver:token];
        }
        if (handlesReopen_) {
            [NSAppleEventManager.sharedAppleEventManager removeEventHandlerForEventClass:kCoreEventClass
                                                                              andEventID:kAEReopenApplication];
        }
    }

    Observers(const Observers&) = delete;
    Observers& operator=(const Observers&) = delete;

private:
    using Reaction = std::function<void(State&)>;

    void listen(NSNotificationCenter* center, NSNotificationName name, NSOperationQueue* queue,
                std::weak_ptr<State> weak, Reaction reaction) {
        const id token = [center addObserverForName:name
                                             object:nil
                                              queue:queue
                                         usingBlock:^(NSNotification*) {
                                           guarded([&] {
                                               if (const auto state = weak.lock()) {
                                                   reaction(*state);
                                               }
                                           });
                                         }];
        tokens_.emplace_back(center, token);
    }

    void handleReopen() {
        [NSAppleEventManager.sharedAppleEventManager setEventHandler:reopenHandler_
                                                         andSelector:@selector(handleReopen:withReply:)
                                                       forEventClass:kCoreEventClass
                                                          andEventID:kAEReopenApplication];
        handlesReopen_ = true;
    }

    std::vector<std::pair<NSNotificationCenter*, id>> tokens_;
    QuillaneReopenHandler* reopenHandler_ = [[QuillaneReopenHandler alloc] init];
    bool handlesReopen_ = false;
};

MacWorkspace::MacWorkspace(bool atLogin) : state_(std::make_shared<State>()) {
    state_->atLogin = atLogin;
    observers_ = std::make_unique<Observers>(state_);
}

MacWorkspace::~MacWorkspace() = default;

std::optional<RunningApplication> MacWorkspace::frontmostApplication() const {
    @autoreleasepool {
        NSRunningApplication* application = NSWorkspace.sharedWorkspace.frontmostApplication;
        return application ? std::optional(value(application)) : std::nullopt;
    }
}

std::vector<RunningApplication> MacWorkspace::runningApplications(std::string_view bundleID) const {
    @autoreleasepool {
        std::vector<RunningApplication> result;
        for (NSRunningApplication* application in
             [NSRunningApplication runningApplicationsWithBundleIdentifier:nsString(bundleID)]) {
            if (application.processIdentifier != getpid() && !application.terminated) {
                result.push_back(value(application));
            }
        }
        return result;
    }
}

bool MacWorkspace::isRunning(pid_t pid) const {
    @autoreleasepool {
        NSRunningApplication* application = [NSRunningApplication runningApplicationWithProcessIdentifier:pid];
        return application && !application.terminated;
    }
}

bool MacWorkspace::activateApplication(pid_t pid) {
    @autoreleasepool {
        NSRunningApplication* application = [NSRunningApplication runningApplicationWithProcessIdentifier:pid];
        if (@available(macOS 14, *)) { // the active application must yield first
            if (application) {
                [NSApplication.sharedApplication yieldActivationToApplication:application];
            }
        }
        return [application activateWithOptions:NSApplicationActivateIgnoringOtherApps];
    }
}

bool MacWorkspace::terminate(pid_t pid) {
    @autoreleasepool {
        return [[NSRunningApplication runningApplicationWithProcessIdentifier:pid] terminate];
    }
}

bool MacWorkspace::launchedAtLogin() const {
    return state_->atLogin;
}

core::Subscription MacWorkspace::onDidActivateApplication(std::function<void()> callback) {
    return state_->activated.subscribe(std::move(callback));
}

core::Subscription MacWorkspace::onDidWake(std::function<void()> callback) {
    return state_->woken.subscribe(std::move(callback));
}

core::Subscription MacWorkspace::onDidReopen(std::function<void()> callback) {
    return state_->reopened.subscribe(std::move(callback));
}

} // namespace quillane
