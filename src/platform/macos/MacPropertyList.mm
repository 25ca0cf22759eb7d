// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/MacPropertyList.hpp"

#include "platform/macos/MacStrings.hpp"

#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

namespace quillane {

namespace {

using Value = core::PropertyListValue;

std::optional<Value> numberValue(NSNumber* number) {
    if (CFGetTypeID((__bridge CFTypeRef)number) == CFBooleanGetTypeID()) {
        return Value(static_cast<bool>(number.boolValue));
    }
    if (CFNumberIsFloatType((__bridge CFNumberRef)number)) {
        return Value(number.doubleValue);
    }
    return Value(static_cast<std::int64_t>(number.longLongValue));
}

std::optional<Value> arrayValue(NSArray* objects) {
    Value::Array values;
    for (id object in objects) {
        auto value = propertyListValue(object);
        if (!value) {
            return std::nullopt;
        }
        values.push_back(std::move(*value));
    }
    return Value(std::move(values));
}

std::optional<Value> dictionaryValue(NSDictionary* objects) {
    Value::Dictionary values;
    for (id key in objects) {
        auto value = propertyListValue(objects[key]);
        if (!value || ![key isKindOfClass:NSString.class]) {
            return std::nullopt;
        }
        values.insert_or_assign(utf8((NSString*)key), std::move(*value));
    }
    return Value(std::move(values));
}

} // namespace

std::optional<Value> propertyListValue(id object) {
    if ([object isKindOfClass:NSString.class]) {
        return Value(utf8((NSString*)object));
    }
    if ([object isKindOfClass:NSNumber.class]) {
        return numberValue((NSNumber*)object);
    }
    if ([object isKindOfClass:NSData.class]) {
        NSData* data = (NSData*)object;
        const auto* bytes = static_cast<const std::byte*>(data.bytes);
        return Value(Value::Data({bytes, bytes + data.length}));
    }
    if ([object isKindOfClass:NSDate.class]) {
        return Value(Value::Date{((NSDate*)object).timeIntervalSinceReferenceDate});
    }
    if ([object isKindOfClass:NSArray.class]) {
        return arrayValue((NSArray*)object);
    }
    if ([object isKindOfClass:NSDictionary.class]) {
        return dictionaryValue((NSDictionary*)object);
    }
    return std::nullopt;
}

id propertyListObject(const Value& value) {
    return std::visit(
        [](const auto& exact) -> id {
            using Exact = std::remove_cvref_t<decltype(exact)>;
            if constexpr (std::is_same_v<Exact, bool>) {
                return exact ? @YES : @NO;
            } else if constexpr (std::is_same_v<Exact, std::int64_t>) {
                return [NSNumber numberWithLongLong:exact];
            } else if constexpr (std::is_same_v<Exact, double>) {
                return [NSNumber numberWithDouble:exact];
            } else if constexpr (std::is_same_v<Exact, std::string>) {
                return nsString(exact);
            } else if constexpr (std::is_same_v<Exact, Value::Data>) {
                return [NSData dataWithBytes:exact->data() length:exact->size()];
            } else if constexpr (std::is_same_v<Exact, Value::Date>) {
                return [NSDate dateWithTimeIntervalSinceReferenceDate:exact.secondsSinceReferenceDate];
            } else if constexpr (std::is_same_v<Exact, Value::Array>) {
                NSMutableArray* objects = [NSMutableArray arrayWithCapacity:exact.size()];
                for (const auto& element : exact) {
                    [objects addObject:propertyListObject(element)];
                }
                return objects;
            } else {
                NSMutableDictionary* objects = [NSMutableDictionary dictionaryWithCapacity:exact.size()];
                for (const auto& [key, element] : exact) {
                    objects[nsString(key)] = propertyListObject(element);
                }
                return objects;
            }
        },
        value.storage());
}

} // namespace quillane
