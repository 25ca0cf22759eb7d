// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/system/MacSecretStore.hpp"

#include "platform/macos/foundation/MacAutoreleasePool.hpp"
#include "platform/macos/foundation/MacCollections.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#include <Security/Security.h>

namespace quillane {

namespace {

using core::SecretStatus;

/// The enumeration holds the framework's own numbers; unnamed ones are passed on as well.
SecretStatus secretStatus(OSStatus status) {
    return static_cast<SecretStatus>(status);
}

} // namespace

std::variant<core::SecretBytes, SecretStatus> MacSecretStore::find(const core::SecretName& name) {
    const AutoreleasePool pool;
    const auto service = cfString(name.service);
    const auto account = cfString(name.account);
    const auto query = cfDictionary({
        {kSecClass, kSecClassGenericPassword},
        {kSecAttrService, service.get()},
        {kSecAttrAccount, account.get()},
        {kSecReturnData, kCFBooleanTrue},
        {kSecMatchLimit, kSecMatchLimitOne},
    });
    CFTypeRef result = nullptr;
    const OSStatus status = SecItemCopyMatching(query.get(), &result);
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

SecretStatus MacSecretStore::add(const core::SecretName& name, const std::string& label,
                                 std::span<const std::byte> secret) {
    const AutoreleasePool pool;
    const auto service = cfString(name.service);
    const auto account = cfString(name.account);
    const auto title = cfString(label);
    // The caller's own bytes, which it wipes: no copy of a secret is left behind in memory.
    const auto data = CFRef<CFDataRef>::adopt(
        CFDataCreateWithBytesNoCopy(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(secret.data()),
                                    static_cast<CFIndex>(secret.size()), kCFAllocatorNull));
    if (!data) {
        return SecretStatus::notAvailable;
    }
    const auto item = cfDictionary({
        {kSecClass, kSecClassGenericPassword},
        {kSecAttrService, service.get()},
        {kSecAttrAccount, account.get()},
        {kSecAttrLabel, title.get()},
        {kSecAttrAccessible, kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly},
        {kSecValueData, data.get()},
    });
    return secretStatus(SecItemAdd(item.get(), nullptr));
}

} // namespace quillane
