// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/MacSecretStore.hpp"

#include "platform/macos/CFRef.hpp"
#include "platform/macos/MacStrings.hpp"

#import <Foundation/Foundation.h>
#import <Security/Security.h>

namespace quillane {

namespace {

using core::SecretStatus;

/// The attributes that name an item.
NSMutableDictionary* queryFor(const core::SecretName& name) {
    return [@{
        (__bridge NSString*)kSecClass : (__bridge NSString*)kSecClassGenericPassword,
        (__bridge NSString*)kSecAttrService : nsString(name.service),
        (__bridge NSString*)kSecAttrAccount : nsString(name.account),
    } mutableCopy];
}

/// The framework's own numbers are what the enumeration holds; those that it does not name are passed on as well.
SecretStatus secretStatus(OSStatus status) {
    return static_cast<SecretStatus>(status);
}

} // namespace

std::variant<core::SecretBytes, SecretStatus> MacSecretStore::find(const core::SecretName& name) {
    @autoreleasepool {
        NSMutableDictionary* query = queryFor(name);
        query[(__bridge NSString*)kSecReturnData] = @YES;
        query[(__bridge NSString*)kSecMatchLimit] = (__bridge NSString*)kSecMatchLimitOne;
        CFTypeRef result = nullptr;
        const OSStatus status = SecItemCopyMatching((__bridge CFDictionaryRef)query, &result);
        const auto owned = CFRef<CFTypeRef>::adopt(result);
        if (status != errSecSuccess) {
            return secretStatus(status);
        }
        const auto data = cfCast<CFDataRef>(owned.get(), CFDataGetTypeID());
        if (!data) {
            return SecretStatus::decode;
        }
        const auto* bytes = reinterpret_cast<const std::byte*>(CFDataGetBytePtr(data));
        return core::SecretBytes(std::span(bytes, static_cast<std::size_t>(CFDataGetLength(data))));
    }
}

SecretStatus MacSecretStore::add(const core::SecretName& name, const std::string& label,
                                 std::span<const std::byte> secret) {
    @autoreleasepool {
        NSMutableDictionary* item = queryFor(name);
        item[(__bridge NSString*)kSecValueData] = [NSData dataWithBytes:secret.data() length:secret.size()];
        item[(__bridge NSString*)kSecAttrAccessible] =
            (__bridge NSString*)kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly;
        item[(__bridge NSString*)kSecAttrLabel] = nsString(label);
        return secretStatus(SecItemAdd((__bridge CFDictionaryRef)item, nullptr));
    }
}

} // namespace quillane
