// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

// Text Input Source Services ("Text Input Source Services Reference"). On the main thread only.

#include "CoreFoundation/CoreFoundation.h"

using TISInputSourceRef = struct OpaqueInputSource*;

constexpr OSStatus paramErr = -50;

extern "C" {
extern const CFStringRef kTISPropertyInputSourceCategory;
extern const CFStringRef kTISPropertyInputSourceIsSelectCapable;
extern const CFStringRef kTISPropertyInputSourceIsEnabled;
extern const CFStringRef kTISPropertyInputSourceID;
extern const CFStringRef kTISPropertyLocalizedName;
extern const CFStringRef kTISPropertyInputSourceLanguages;
extern const CFStringRef kTISPropertyUnicodeKeyLayoutData;
extern const CFStringRef kTISCategoryKeyboardInputSource;
extern const CFStringRef kTISNotifySelectedKeyboardInputSourceChanged;
extern const CFStringRef kTISNotifyEnabledKeyboardInputSourcesChanged;

/// Those that have all the properties of the filter.
CFArrayRef TISCreateInputSourceList(CFDictionaryRef properties, Boolean includeAllInstalled);
TISInputSourceRef TISCopyCurrentKeyboardInputSource();
void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key); ///< belongs to the source
/// paramErr for one that cannot be selected or is not enabled.
OSStatus TISSelectInputSource(TISInputSourceRef source);
}
