// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/foundation/MacPropertyList.hpp"

#include "platform/macos/foundation/MacCollections.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#include <algorithm>
#include <new>
#include <string>
#include <utility>

namespace quillane {

namespace {

using Value = core::PropertyListValue;

Value numberValue(CFNumberRef number) {
    std::int64_t whole = 0;
    if (!CFNumberIsFloatType(number) && CFNumberGetValue(number, kCFNumberSInt64Type, &whole)) {
        return whole;
    }
    double fraction = 0;
    CFNumberGetValue(number, kCFNumberDoubleType, &fraction);
    return fraction;
}

std::optional<Value> arrayValue(CFArrayRef objects) {
    Value::Array values;
    for (CFIndex i = 0; i < CFArrayGetCount(objects); ++i) {
        auto value = propertyListValue(CFArrayGetValueAtIndex(objects, i));
        if (!value) {
            return std::nullopt;
        }
        values.push_back(std::move(*value));
    }
    return Value(std::move(values));
}

std::optional<Value> dictionaryValue(CFDictionaryRef objects) {
    const auto count = static_cast<std::size_t>(CFDictionaryGetCount(objects));
    std::vector<const void*> keys(count);
    std::vector<const void*> elements(count);
    CFDictionaryGetKeysAndValues(objects, keys.data(), elements.data());
    Value::Dictionary values;
    for (std::size_t i = 0; i < count; ++i) {
        const auto key = cfCast<CFStringRef>(keys[i], CFStringGetTypeID());
        auto value = propertyListValue(elements[i]);
        if (!key || !value) {
            return std::nullopt;
        }
        values.insert_or_assign(utf8(key), std::move(*value));
    }
    return Value(std::move(values));
}

Value dataValue(CFDataRef data) {
    const auto* bytes = reinterpret_cast<const std::byte*>(CFDataGetBytePtr(data));
    return Value::Data({bytes, bytes + CFDataGetLength(data)});
}

template <typename T>
CFRef<CFTypeRef> owned(T object) {
    return object ? CFRef<CFTypeRef>::adopt(object) : throw std::bad_alloc();
}

CFRef<CFTypeRef> object(bool flag) {
    return CFRef<CFTypeRef>::retain(flag ? kCFBooleanTrue : kCFBooleanFalse);
}

CFRef<CFTypeRef> object(std::int64_t number) {
    return owned(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &number));
}

CFRef<CFTypeRef> object(double number) {
    return owned(CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &number));
}

CFRef<CFTypeRef> object(const std::string& text) {
    return CFRef<CFTypeRef>::retain(cfString(text).get());
}

CFRef<CFTypeRef> object(const Value::Data& data) {
    return owned(CFDataCreate(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(data->data()),
                              static_cast<CFIndex>(data->size())));
}

CFRef<CFTypeRef> object(const Value::Date& date) {
    return owned(CFDateCreate(kCFAllocatorDefault, date.secondsSinceReferenceDate));
}

CFRef<CFTypeRef> object(const Value::Array& values) {
    std::vector<CFRef<CFTypeRef>> elements;
    std::ranges::transform(values, std::back_inserter(elements), propertyListObject);
    std::vector<CFTypeRef> borrowed;
    std::ranges::transform(elements, std::back_inserter(borrowed), &CFRef<CFTypeRef>::get);
    return CFRef<CFTypeRef>::retain(cfArray(std::move(borrowed)).get());
}

CFRef<CFTypeRef> object(const Value::Dictionary& values) {
    std::vector<CFRef<CFTypeRef>> objects;
    std::vector<CFTypeRef> keys;
    std::vector<CFTypeRef> elements;
    for (const auto& [key, value] : values) {
        keys.push_back(objects.emplace_back(object(key)).get());
        elements.push_back(objects.emplace_back(propertyListObject(value)).get());
    }
    return CFRef<CFTypeRef>::retain(cfDictionary(std::move(keys), std::move(elements)).get());
}

} // namespace

std::optional<Value> propertyListValue(CFTypeRef object) {
    if (const auto text = cfCast<CFStringRef>(object, CFStringGetTypeID())) {
        return Value(utf8(text));
    }
    if (const auto flag = cfCast<CFBooleanRef>(object, CFBooleanGetTypeID())) {
        return Value(static_cast<bool>(CFBooleanGetValue(flag)));
    }
    if (const auto number = cfCast<CFNumberRef>(object, CFNumberGetTypeID())) {
        return numberValue(number);
    }
    if (const auto data = cfCast<CFDataRef>(object, CFDataGetTypeID())) {
        return dataValue(data);
    }
    if (const auto date = cfCast<CFDateRef>(object, CFDateGetTypeID())) {
        return Value(Value::Date{CFDateGetAbsoluteTime(date)});
    }
    if (const auto list = cfCast<CFArrayRef>(object, CFArrayGetTypeID())) {
        return arrayValue(list);
    }
    if (const auto dictionary = cfCast<CFDictionaryRef>(object, CFDictionaryGetTypeID())) {
        return dictionaryValue(dictionary);
    }
    return std::nullopt;
}

CFRef<CFTypeRef> propertyListObject(const Value& value) {
    return std::visit([](const auto& exact) { return object(exact); }, value.storage());
}

} // namespace quillane
