// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/Keychain.hpp"

#include "standins/macos/Mac.hpp"
#include "standins/macos/Strings.hpp"

#include <algorithm>

namespace quillane::standin {

namespace {

std::string textOf(CFDictionaryRef dictionary, CFStringRef key) {
    const auto found = entry(dictionary, key);
    return found != nullptr ? text(found) : std::string();
}

bool isGenericPassword(CFDictionaryRef dictionary) {
    const auto found = entry(dictionary, kSecClass);
    return found != nullptr && CFEqual(found, kSecClassGenericPassword) != 0;
}

} // namespace

OSStatus Keychain::find(CFDictionaryRef query, CFTypeRef* result) const {
    if (!isGenericPassword(query) || entry(query, kSecReturnData) != kCFBooleanTrue ||
        textOf(query, kSecMatchLimit) != text(kSecMatchLimitOne)) {
        return errSecParam;
    }
    if (status_ != errSecSuccess) {
        return status_;
    }
    const auto found = std::ranges::find_if(items_, [&](const Item& item) {
        return item.service == textOf(query, kSecAttrService) && item.account == textOf(query, kSecAttrAccount);
    });
    if (found == items_.end()) {
        return errSecItemNotFound;
    }
    if (instead_) {
        *result = *instead_ ? CFRetain((*instead_)->get()) : nullptr;
        return errSecSuccess;
    }
    *result = CFDataCreate(nullptr, found->secret.data(), static_cast<CFIndex>(found->secret.size()));
    return errSecSuccess;
}

OSStatus Keychain::add(CFDictionaryRef attributes) {
    const auto data = cfCast<CFDataRef>(entry(attributes, kSecValueData), CFDataGetTypeID());
    if (!isGenericPassword(attributes) || data == nullptr) {
        return errSecParam;
    }
    if (status_ != errSecSuccess) {
        return status_;
    }
    const auto* bytes = CFDataGetBytePtr(data);
    Item item{.service = textOf(attributes, kSecAttrService),
              .account = textOf(attributes, kSecAttrAccount),
              .label = textOf(attributes, kSecAttrLabel),
              .accessible = textOf(attributes, kSecAttrAccessible),
              .secret = std::vector<UInt8>(bytes, bytes + CFDataGetLength(data))};
    const bool isThere = std::ranges::any_of(
        items_, [&](const Item& other) { return other.service == item.service && other.account == item.account; });
    if (!isThere) {
        items_.push_back(std::move(item));
    }
    return isThere ? errSecDuplicateItem : errSecSuccess;
}

} // namespace quillane::standin

extern "C" {

const CFStringRef kSecClass = CFSTR("class");
const CFStringRef kSecClassGenericPassword = CFSTR("generic password");
const CFStringRef kSecAttrService = CFSTR("service");
const CFStringRef kSecAttrAccount = CFSTR("account");
const CFStringRef kSecAttrLabel = CFSTR("label");
const CFStringRef kSecAttrAccessible = CFSTR("accessible");
const CFStringRef kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly = CFSTR("after first unlock, this device only");
const CFStringRef kSecReturnData = CFSTR("return data");
const CFStringRef kSecMatchLimit = CFSTR("match limit");
const CFStringRef kSecMatchLimitOne = CFSTR("match one");
const CFStringRef kSecValueData = CFSTR("value data");

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result) {
    return quillane::standin::Mac::current().keychain.find(query, result);
}

OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef* /*result*/) {
    return quillane::standin::Mac::current().keychain.add(attributes);
}
}
