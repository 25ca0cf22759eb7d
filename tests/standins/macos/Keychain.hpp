// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "standins/macos/Values.hpp"

#include <Security/Security.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quillane::standin {

/// The login keychain.
class Keychain {
public:
    struct Item {
        std::string service;
        std::string account;
        std::string label;
        std::string accessible;
        std::vector<UInt8> secret;
    };

    [[nodiscard]] OSStatus find(CFDictionaryRef query, CFTypeRef* result) const;
    [[nodiscard]] OSStatus add(CFDictionaryRef attributes);

    [[nodiscard]] const std::vector<Item>& items() const { return items_; }

    /// Every call is answered with this from now on.
    void answer(OSStatus status) { status_ = status; }

    /// An item is found, and instead of its bytes this is given, or nothing.
    void giveInstead(std::optional<Value> object) { instead_ = std::move(object); }

    void settle() { instead_.reset(); }

private:
    std::vector<Item> items_;
    OSStatus status_ = errSecSuccess;
    std::optional<std::optional<Value>> instead_;
};

} // namespace quillane::standin
