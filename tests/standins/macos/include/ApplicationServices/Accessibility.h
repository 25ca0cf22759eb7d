// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

// Accessibility (developer.apple.com/documentation/applicationservices/axuielement_h, …/axvalue_h and …/axerror_h).

#include "CoreFoundation/CoreFoundation.h"

#include <sys/types.h>

using AXUIElementRef = const struct OpaqueAXUIElement*;
using AXObserverRef = struct OpaqueAXObserver*;
using AXValueRef = const struct OpaqueAXValue*;
using AXObserverCallback = void (*)(AXObserverRef observer, AXUIElementRef element, CFStringRef notification,
                                    void* context);

enum AXError : SInt32 {
    kAXErrorSuccess = 0,
    kAXErrorFailure = -25200,
    kAXErrorIllegalArgument = -25201,
    kAXErrorInvalidUIElement = -25202,
    kAXErrorCannotComplete = -25204, ///< no answer, or none within the messaging time-out
    kAXErrorAttributeUnsupported = -25205,
    kAXErrorActionUnsupported = -25206,
    kAXErrorNotificationUnsupported = -25207,
    kAXErrorNotificationAlreadyRegistered = -25209,
    kAXErrorNotificationNotRegistered = -25210,
    kAXErrorAPIDisabled = -25211, ///< no permission
    kAXErrorNoValue = -25212,
};

enum AXValueType : UInt32 {
    kAXValueTypeCGPoint = 1,
    kAXValueTypeCGSize = 2,
    kAXValueTypeCGRect = 3,
    kAXValueTypeCFRange = 4,
    kAXValueTypeAXError = 5,
};

enum AXCopyMultipleAttributeOptions : UInt32 { kAXCopyMultipleAttributeOptionStopOnError = 1 };

extern "C" {
CFTypeID AXUIElementGetTypeID();
AXUIElementRef AXUIElementCreateApplication(pid_t pid);
AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid); ///< asks nobody
/// Holds for this reference; 0 stands for the system's own time-out.
AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float seconds);
AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef name, CFTypeRef* value);
AXError AXUIElementCopyParameterizedAttributeValue(AXUIElementRef element, CFStringRef name, CFTypeRef parameter,
                                                   CFTypeRef* value);
/// Puts an AXValue of an error in the place of each attribute that cannot be read.
AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef names,
                                               AXCopyMultipleAttributeOptions options, CFArrayRef* values);
AXError AXUIElementIsAttributeSettable(AXUIElementRef element, CFStringRef name, Boolean* settable);
AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef name, CFTypeRef value);
AXError AXUIElementCopyActionNames(AXUIElementRef element, CFArrayRef* names);
AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action);

CFTypeID AXValueGetTypeID();
AXValueRef AXValueCreate(AXValueType type, const void* value);
AXValueType AXValueGetType(AXValueRef value);
Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* result); ///< false when it is of another type

AXError AXObserverCreate(pid_t pid, AXObserverCallback callback, AXObserverRef* observer);
AXError AXObserverAddNotification(AXObserverRef observer, AXUIElementRef element, CFStringRef notification,
                                  void* context);
AXError AXObserverRemoveNotification(AXObserverRef observer, AXUIElementRef element, CFStringRef notification);
CFRunLoopSourceRef AXObserverGetRunLoopSource(AXObserverRef observer); ///< belongs to the observer
}
