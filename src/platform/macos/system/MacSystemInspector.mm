// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/system/MacSystemInspector.hpp"

#include "platform/macos/foundation/CFRef.hpp"
#include "platform/macos/foundation/MacActivity.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>
#import <Security/Security.h>

#include <sys/utsname.h>

namespace quillane {

namespace {

using core::SignatureState;

CFRef<CFDictionaryRef> signingInformation(SecCodeRef code) {
    CFDictionaryRef information = nullptr;
    // A reference to running code stands for the static code that it was made of, too (SecCode.h).
    SecCodeCopySigningInformation(static_cast<SecStaticCodeRef>(static_cast<const void*>(code)),
                                  kSecCSSigningInformation, &information);
    return CFRef<CFDictionaryRef>::adopt(information);
}

bool isAdHoc(CFDictionaryRef information) {
    const auto flags = cfCast<CFNumberRef>(CFDictionaryGetValue(information, kSecCodeInfoFlags), CFNumberGetTypeID());
    std::int64_t value = 0;
    return flags && CFNumberGetValue(flags, kCFNumberSInt64Type, &value) && (value & kSecCodeSignatureAdhoc) != 0;
}

/// Looks at the running code only, not at the files around it, which would take seconds.
core::CodeSignature signature() {
    SecCodeRef self = nullptr;
    if (SecCodeCopySelf(kSecCSDefaultFlags, &self) != errSecSuccess) {
        return {SignatureState::missing, {}};
    }
    const auto code = CFRef<SecCodeRef>::adopt(self);
    const auto information = signingInformation(code.get());
    const OSStatus validity = SecCodeCheckValidity(code.get(), kSecCSDefaultFlags, nullptr);
    if (validity == errSecCSUnsigned || !information ||
        !CFDictionaryContainsKey(information.get(), kSecCodeInfoIdentifier)) {
        return {SignatureState::missing, {}};
    }
    if (validity != errSecSuccess) {
        return {SignatureState::altered, {}};
    }
    if (isAdHoc(information.get())) {
        return {SignatureState::adHoc, {}};
    }
    return {SignatureState::valid,
            utf8(cfCast<CFStringRef>(CFDictionaryGetValue(information.get(), kSecCodeInfoTeamIdentifier),
                                     CFStringGetTypeID()))};
}

std::string systemName() {
    utsname machine{};
    uname(&machine);
    return "macOS " + utf8(NSProcessInfo.processInfo.operatingSystemVersionString) + ", " + machine.machine;
}

bool hasWindowServer() {
    return static_cast<bool>(CFRef<CFDictionaryRef>::adopt(CGSessionCopyCurrentDictionary()));
}

} // namespace

core::SystemFacts MacSystemInspector::inspect() {
    @autoreleasepool {
        return {.desktop = core::Desktop::macOS,
                .name = systemName(),
                .signature = signature(),
                .holdsActivity = MacActivity::isHeld(),
                .windowSystem = hasWindowServer() ? std::nullopt : std::optional(core::WindowSystem::none),
                .accessibilityBus = std::nullopt,
                .secretService = std::nullopt};
    }
}

} // namespace quillane
