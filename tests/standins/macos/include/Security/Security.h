// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

// Keychain items (developer.apple.com/documentation/security/keychain_services/keychain_items).

#include "CoreFoundation/CoreFoundation.h"

constexpr OSStatus errSecSuccess = 0;
constexpr OSStatus errSecParam = -50;
constexpr OSStatus errSecNotAvailable = -25291;
constexpr OSStatus errSecAuthFailed = -25293;
constexpr OSStatus errSecDuplicateItem = -25299;
constexpr OSStatus errSecItemNotFound = -25300;
constexpr OSStatus errSecInteractionNotAllowed = -25308;

extern "C" {
extern const CFStringRef kSecClass;
extern const CFStringRef kSecClassGenericPassword;
extern const CFStringRef kSecAttrService;
extern const CFStringRef kSecAttrAccount;
extern const CFStringRef kSecAttrLabel;
extern const CFStringRef kSecAttrAccessible;
extern const CFStringRef kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly;
extern const CFStringRef kSecReturnData;
extern const CFStringRef kSecMatchLimit;
extern const CFStringRef kSecMatchLimitOne;
extern const CFStringRef kSecValueData;

OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef* result);
OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef* result);
}
