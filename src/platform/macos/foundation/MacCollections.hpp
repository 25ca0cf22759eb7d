// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/macos/foundation/CFRef.hpp"

#include <initializer_list>
#include <new>
#include <utility>
#include <vector>

namespace quillane {

/// A list of the objects, which it retains (CFArrayCreate). Never null.
[[nodiscard]] inline CFRef<CFArrayRef> cfArray(std::vector<CFTypeRef> objects) {
    auto list = CFRef<CFArrayRef>::adopt(CFArrayCreate(kCFAllocatorDefault, objects.data(),
                                                       static_cast<CFIndex>(objects.size()), &kCFTypeArrayCallBacks));
    return list ? list : throw std::bad_alloc();
}

/// A dictionary of keys and values, which it retains (CFDictionaryCreate). Never null.
[[nodiscard]] inline CFRef<CFDictionaryRef> cfDictionary(std::vector<CFTypeRef> keys, std::vector<CFTypeRef> values) {
    auto dictionary = CFRef<CFDictionaryRef>::adopt(
        CFDictionaryCreate(kCFAllocatorDefault, keys.data(), values.data(), static_cast<CFIndex>(keys.size()),
                           &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    return dictionary ? dictionary : throw std::bad_alloc();
}

[[nodiscard]] inline CFRef<CFDictionaryRef>
cfDictionary(std::initializer_list<std::pair<CFTypeRef, CFTypeRef>> entries) {
    std::vector<CFTypeRef> keys;
    std::vector<CFTypeRef> values;
    for (const auto& [key, value] : entries) {
        keys.push_back(key);
        values.push_back(value);
    }
    return cfDictionary(std::move(keys), std::move(values));
}

} // namespace quillane
