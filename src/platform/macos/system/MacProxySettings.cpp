// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/system/MacProxySettings.hpp"

#include "platform/macos/foundation/MacAutoreleasePool.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#include <CFNetwork/CFNetwork.h>

namespace quillane {

namespace {

constexpr CFTimeInterval scriptTimeout = 10;

/// The result of an automatic configuration, from the run loop.
struct ScriptAnswer {
    CFRef<CFArrayRef> proxies;
    bool isGiven = false;
};

void takeAnswer(void* info, CFArrayRef proxies, CFErrorRef /*error*/) {
    auto* answer = static_cast<ScriptAnswer*>(info);
    answer->proxies = CFRef<CFArrayRef>::retain(proxies);
    answer->isGiven = true;
    CFRunLoopStop(CFRunLoopGetCurrent());
}

CFRef<CFArrayRef> runScript(CFURLRef script, CFURLRef target) {
    ScriptAnswer answer;
    CFStreamClientContext context = {0, &answer, nullptr, nullptr, nullptr};
    const auto source = CFRef<CFRunLoopSourceRef>::adopt(
        CFNetworkExecuteProxyAutoConfigurationURL(script, target, takeAnswer, &context));
    if (!source) {
        return {};
    }
    const CFStringRef mode = CFSTR("com.quillane.app.proxy");
    CFRunLoopAddSource(CFRunLoopGetCurrent(), source.get(), mode);
    CFRunLoopRunInMode(mode, scriptTimeout, false);
    CFRunLoopSourceInvalidate(source.get());
    return answer.isGiven ? answer.proxies : CFRef<CFArrayRef>();
}

CFDictionaryRef firstProxy(const CFRef<CFArrayRef>& proxies) {
    return proxies && CFArrayGetCount(proxies.get()) > 0
               ? cfCast<CFDictionaryRef>(CFArrayGetValueAtIndex(proxies.get(), 0), CFDictionaryGetTypeID())
               : nullptr;
}

bool isOfType(CFDictionaryRef proxy, CFStringRef type) {
    const auto* found = CFDictionaryGetValue(proxy, kCFProxyTypeKey);
    return found && CFEqual(found, type);
}

/// The proxy as a URL; empty for none and for kinds that do not apply to file servers.
std::string address(CFDictionaryRef proxy) {
    const bool isSocks = isOfType(proxy, kCFProxyTypeSOCKS);
    if (!isSocks && !isOfType(proxy, kCFProxyTypeHTTP) && !isOfType(proxy, kCFProxyTypeHTTPS)) {
        return {};
    }
    const auto host = utf8(cfCast<CFStringRef>(CFDictionaryGetValue(proxy, kCFProxyHostNameKey), CFStringGetTypeID()));
    int port = 0;
    if (const auto number =
            cfCast<CFNumberRef>(CFDictionaryGetValue(proxy, kCFProxyPortNumberKey), CFNumberGetTypeID())) {
        CFNumberGetValue(number, kCFNumberIntType, &port);
    }
    if (host.empty() || port <= 0) {
        return {};
    }
    const auto name = host.find(':') == std::string::npos ? host : '[' + host + ']';
    return (isSocks ? "socks5h://" : "http://") + name + ':' + std::to_string(port);
}

} // namespace

std::optional<std::string> MacProxySettings::proxyFor(const std::string& url) const {
    const AutoreleasePool pool; // transfer threads have none
    const auto target =
        CFRef<CFURLRef>::adopt(CFURLCreateWithString(kCFAllocatorDefault, cfString(url).get(), nullptr));
    const auto settings = CFRef<CFDictionaryRef>::adopt(CFNetworkCopySystemProxySettings());
    if (!target || !settings) {
        return std::string();
    }
    auto proxies = CFRef<CFArrayRef>::adopt(CFNetworkCopyProxiesForURL(target.get(), settings.get()));
    auto proxy = firstProxy(proxies);
    if (proxy && isOfType(proxy, kCFProxyTypeAutoConfigurationURL)) {
        const auto script = CFRef<CFURLRef>::retain(
            cfCast<CFURLRef>(CFDictionaryGetValue(proxy, kCFProxyAutoConfigurationURLKey), CFURLGetTypeID()));
        proxies = script ? runScript(script.get(), target.get()) : CFRef<CFArrayRef>();
        proxy = firstProxy(proxies);
    }
    return proxy ? address(proxy) : std::string();
}

} // namespace quillane
