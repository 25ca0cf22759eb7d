// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/macos/foundation/CFRef.hpp"
#include "standins/macos/Object.hpp"

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

namespace quillane::standin {

// Values as tests and other stand-ins write them down; each holds its one reference.

using Value = CFRef<CFTypeRef>;

[[nodiscard]] Value value(bool flag);
[[nodiscard]] Value value(int number);
[[nodiscard]] Value value(double number);
[[nodiscard]] Value value(std::string_view text);

inline Value value(const char* text) {
    return value(std::string_view(text));
}

[[nodiscard]] Value list(const std::vector<Value>& values);
[[nodiscard]] Value dictionary(const std::vector<std::pair<Value, Value>>& entries);

/// A value that belongs to somebody else, as a constant.
[[nodiscard]] inline Value borrowed(CFTypeRef object) {
    return Value::retain(object);
}

/// 2^64 - 1, as a property list may hold it.
[[nodiscard]] Value hugeNumber();

/// An object of a type that nobody knows.
[[nodiscard]] Value foreignObject();

/// The value of a key in a dictionary; null when it has none. It belongs to the dictionary.
[[nodiscard]] CFTypeRef entry(CFDictionaryRef dictionary, CFStringRef key);

} // namespace quillane::standin
