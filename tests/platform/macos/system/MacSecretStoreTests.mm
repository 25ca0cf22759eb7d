// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/system/MacSecretStore.hpp"

#include "contracts/SecretStoreContract.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#include <array>

#import <Foundation/Foundation.h>
#import <Security/Security.h>

namespace quillane {
namespace {

/// The keychain of the user who runs the tests, without the contract's items before and after.
class MacSecretStoreDriver {
public:
    MacSecretStoreDriver() { forget(); }

    ~MacSecretStoreDriver() { forget(); }

    MacSecretStoreDriver(const MacSecretStoreDriver&) = delete;
    MacSecretStoreDriver& operator=(const MacSecretStoreDriver&) = delete;

    core::SecretStore& store() { return store_; }

    /// It is open for everything else that the user does.
    static bool lock() { return false; }

private:
    static void forget() {
        for (const auto* service : {"com.example.service", "com.example.other"}) {
            for (const auto* account : {"account", "other"}) {
                SecItemDelete((__bridge CFDictionaryRef) @{
                    (__bridge NSString*)kSecClass : (__bridge NSString*)kSecClassGenericPassword,
                    (__bridge NSString*)kSecAttrService : nsString(service),
                    (__bridge NSString*)kSecAttrAccount : nsString(account),
                });
            }
        }
    }

    MacSecretStore store_;
};

} // namespace

namespace testing {
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, SecretStoreContract, MacSecretStoreDriver);
} // namespace testing
} // namespace quillane
