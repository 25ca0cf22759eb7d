// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "CoreFoundation/Base.h"

using CFNotificationName = CFStringRef;
using CFNotificationCallback = void (*)(CFNotificationCenterRef center, void* observer, CFNotificationName name,
                                        const void* object, CFDictionaryRef userInfo);

enum CFNotificationSuspensionBehavior : CFIndex {
    CFNotificationSuspensionBehaviorDrop = 1,
    CFNotificationSuspensionBehaviorCoalesce = 2,
    CFNotificationSuspensionBehaviorHold = 3,
    CFNotificationSuspensionBehaviorDeliverImmediately = 4,
};

extern "C" {
CFNotificationCenterRef CFNotificationCenterGetDistributedCenter();
void CFNotificationCenterAddObserver(CFNotificationCenterRef center, const void* observer,
                                     CFNotificationCallback callBack, CFStringRef name, const void* object,
                                     CFNotificationSuspensionBehavior suspensionBehavior);
void CFNotificationCenterRemoveEveryObserver(CFNotificationCenterRef center, const void* observer);
}
