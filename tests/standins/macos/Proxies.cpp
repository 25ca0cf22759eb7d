// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/Proxies.hpp"

#include "standins/macos/Mac.hpp"

namespace quillane::standin {

Value Proxies::proxy(CFStringRef type, std::string_view host, int port) {
    return dictionary({{borrowed(kCFProxyTypeKey), borrowed(type)},
                       {borrowed(kCFProxyHostNameKey), value(host)},
                       {borrowed(kCFProxyPortNumberKey), value(port)}});
}

void Proxies::settle() {
    forAddress.reset();
    ofScript.clear();
}

} // namespace quillane::standin

using namespace quillane;
using standin::Mac;
using standin::Proxies;

extern "C" {

const CFStringRef kCFProxyTypeKey = CFSTR("kCFProxyTypeKey");
const CFStringRef kCFProxyHostNameKey = CFSTR("kCFProxyHostNameKey");
const CFStringRef kCFProxyPortNumberKey = CFSTR("kCFProxyPortNumberKey");
const CFStringRef kCFProxyAutoConfigurationURLKey = CFSTR("kCFProxyAutoConfigurationURLKey");
const CFStringRef kCFProxyTypeNone = CFSTR("kCFProxyTypeNone");
const CFStringRef kCFProxyTypeHTTP = CFSTR("kCFProxyTypeHTTP");
const CFStringRef kCFProxyTypeHTTPS = CFSTR("kCFProxyTypeHTTPS");
const CFStringRef kCFProxyTypeSOCKS = CFSTR("kCFProxyTypeSOCKS");
const CFStringRef kCFProxyTypeFTP = CFSTR("kCFProxyTypeFTP");
const CFStringRef kCFProxyTypeAutoConfigurationURL = CFSTR("kCFProxyTypeAutoConfigurationURL");

CFDictionaryRef CFNetworkCopySystemProxySettings() {
    return Mac::current().proxies.hasSettings ? static_cast<CFDictionaryRef>(CFRetain(standin::dictionary({}).get()))
                                              : nullptr;
}

CFArrayRef CFNetworkCopyProxiesForURL(CFURLRef address, CFDictionaryRef settings) {
    static_cast<void>(standin::object(address));
    static_cast<void>(standin::object(settings));
    const auto& proxies = Mac::current().proxies.forAddress;
    return proxies ? static_cast<CFArrayRef>(CFRetain(standin::list(*proxies).get())) : nullptr;
}

CFRunLoopSourceRef CFNetworkExecuteProxyAutoConfigurationURL(CFURLRef script, CFURLRef target,
                                                             CFProxyAutoConfigurationResultCallback callback,
                                                             CFStreamClientContext* context) {
    static_cast<void>(standin::object(script));
    static_cast<void>(standin::object(target));
    auto& proxies = Mac::current().proxies;
    ++proxies.scripts;
    if (proxies.script == Proxies::Script::cannotStart) {
        return nullptr;
    }
    auto& source = standin::make<standin::RunLoopSource>("a proxy script");
    if (proxies.script != Proxies::Script::hangs) {
        source.perform = [&proxies, callback, client = context->info] {
            const auto list = standin::list(proxies.ofScript);
            const bool answers = proxies.script == Proxies::Script::answers;
            callback(client, answers ? static_cast<CFArrayRef>(list.get()) : nullptr, nullptr);
        };
    }
    return standin::reference<CFRunLoopSourceRef>(source);
}
}
