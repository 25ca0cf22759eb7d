// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/applications/MacApplicationCatalog.hpp"

#include "platform/macos/foundation/MacCallback.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#import <AppKit/AppKit.h>

#include <algorithm>
#include <utility>

namespace quillane {

namespace {

using Applications = std::vector<KnownApplication>;

void add(Applications& applications, NSString* bundleID, NSString* name, bool running) {
    NSString* own = NSBundle.mainBundle.bundleIdentifier;
    if (bundleID.length == 0 || name.length == 0 || (own && [bundleID isEqualToString:own])) {
        return;
    }
    const auto id = utf8(bundleID);
    const auto known = std::ranges::find(applications, id, &KnownApplication::bundleID);
    if (known == applications.end()) {
        applications.push_back({.bundleID = id, .name = utf8(name), .running = running});
    } else {
        known->running = known->running || running;
    }
}

/// The bundles in a folder and in the folders directly inside it, such as Utilities.
void addBundles(Applications& applications, NSURL* folder, int levels) {
    NSFileManager* files = NSFileManager.defaultManager;
    NSArray<NSURL*>* contents = [files contentsOfDirectoryAtURL:folder
                                     includingPropertiesForKeys:@[ NSURLIsDirectoryKey ]
                                                        options:NSDirectoryEnumerationSkipsHiddenFiles
                                                          error:nil];
    for (NSURL* item in contents) {
        if ([item.pathExtension isEqualToString:@"app"]) {
            NSString* name = [files displayNameAtPath:item.path];
            if ([name.pathExtension isEqualToString:@"app"]) {
                name = name.stringByDeletingPathExtension; // while the Finder shows extensions
            }
            add(applications, [NSBundle bundleWithURL:item].bundleIdentifier, name, false);
            continue;
        }
        NSNumber* isFolder = nil;
        [item getResourceValue:&isFolder forKey:NSURLIsDirectoryKey error:nil];
        if (levels > 0 && isFolder.boolValue) {
            addBundles(applications, item, levels - 1);
        }
    }
}

/// May be called on any thread; so may everything that it calls.
Applications allApplications() {
    @autoreleasepool {
        Applications applications;
        for (NSURL* folder in [NSFileManager.defaultManager URLsForDirectory:NSApplicationDirectory
                                                                   inDomains:NSAllDomainsMask]) {
            addBundles(applications, folder, 1);
        }
        // Safari is on a separate volume, which the Finder shows as part of /Applications.
        addBundles(applications, [NSURL fileURLWithPath:@"/System/Cryptexes/App/System/Applications" isDirectory:YES],
                   0);
        for (NSRunningApplication* running in NSWorkspace.sharedWorkspace.runningApplications) {
            if (running.activationPolicy == NSApplicationActivationPolicyRegular) {
                add(applications, running.bundleIdentifier, running.localizedName, true);
            }
        }
        return applications;
    }
}

} // namespace

void MacApplicationCatalog::read(Handler handler) {
    const auto alive = lifetime_.watch();
    dispatch_async(dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), ^{
      guarded([&] {
          const auto found = allApplications();
          dispatch_async(dispatch_get_main_queue(), ^{
            guarded([&] {
                if (alive) {
                    handler(found);
                }
            });
          });
      });
    });
}

} // namespace quillane
