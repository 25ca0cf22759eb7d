// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

// Proxies (developer.apple.com/documentation/cfnetwork: CFNetworkCopySystemProxySettings and its neighbours).

#include "CoreFoundation/CoreFoundation.h"

struct CFStreamClientContext {
    CFIndex version;
    void* info;
    void* (*retain)(void* info);
    void (*release)(void* info);
    CFStringRef (*copyDescription)(void* info);
};

/// The list is null when the script fails. Both objects belong to the caller of the function.
using CFProxyAutoConfigurationResultCallback = void (*)(void* client, CFArrayRef proxies, CFErrorRef error);

extern "C" {
extern const CFStringRef kCFProxyTypeKey;
extern const CFStringRef kCFProxyHostNameKey;
extern const CFStringRef kCFProxyPortNumberKey;
extern const CFStringRef kCFProxyAutoConfigurationURLKey;
extern const CFStringRef kCFProxyTypeNone;
extern const CFStringRef kCFProxyTypeHTTP;
extern const CFStringRef kCFProxyTypeHTTPS;
extern const CFStringRef kCFProxyTypeSOCKS;
extern const CFStringRef kCFProxyTypeFTP;
extern const CFStringRef kCFProxyTypeAutoConfigurationURL;

CFDictionaryRef CFNetworkCopySystemProxySettings();
CFArrayRef CFNetworkCopyProxiesForURL(CFURLRef address, CFDictionaryRef settings);
/// A source that calls back once on the run loop that it is added to. The caller releases it.
CFRunLoopSourceRef CFNetworkExecuteProxyAutoConfigurationURL(CFURLRef script, CFURLRef target,
                                                             CFProxyAutoConfigurationResultCallback callback,
                                                             CFStreamClientContext* context);
}
