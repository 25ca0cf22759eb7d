// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/Strings.hpp"
#include "standins/macos/Values.hpp"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>

namespace quillane::standin {

namespace {

class Array final : public Object {
public:
    explicit Array(std::vector<Value> values) : values_(std::move(values)) {}

    [[nodiscard]] CFTypeID type() const override { return CFArrayGetTypeID(); }

    [[nodiscard]] std::string describe() const override { return "a list"; }

    [[nodiscard]] const std::vector<Value>& values() const { return values_; }

private:
    void dispose() override { values_.clear(); }

    std::vector<Value> values_;
};

class Dictionary final : public Object {
public:
    using Entries = std::vector<std::pair<Value, Value>>;

    explicit Dictionary(Entries entries) : entries_(std::move(entries)) {}

    [[nodiscard]] CFTypeID type() const override { return CFDictionaryGetTypeID(); }

    [[nodiscard]] std::string describe() const override { return "a dictionary"; }

    [[nodiscard]] const Entries& entries() const { return entries_; }

private:
    void dispose() override { entries_.clear(); }

    Entries entries_;
};

class Data final : public Object {
public:
    Data(const UInt8* bytes, CFIndex count) : bytes_(bytes), count_(count) {}

    explicit Data(std::vector<UInt8> bytes)
        : copy_(std::move(bytes)), bytes_(copy_.data()), count_(static_cast<CFIndex>(copy_.size())) {}

    [[nodiscard]] CFTypeID type() const override { return CFDataGetTypeID(); }

    [[nodiscard]] std::string describe() const override { return "data"; }

    [[nodiscard]] const UInt8* bytes() const { return bytes_; }

    [[nodiscard]] CFIndex count() const { return count_; }

private:
    std::vector<UInt8> copy_;
    const UInt8* bytes_; ///< the caller's, where nothing was copied
    CFIndex count_;
};

class Foreign final : public Object {
public:
    [[nodiscard]] CFTypeID type() const override { return 99; }

    [[nodiscard]] std::string describe() const override { return "an object of the application's own"; }
};

} // namespace

Value value(bool flag) {
    return borrowed(flag ? kCFBooleanTrue : kCFBooleanFalse);
}

Value value(int number) {
    return Value::adopt(CFNumberCreate(nullptr, kCFNumberIntType, &number));
}

Value value(double number) {
    return Value::adopt(CFNumberCreate(nullptr, kCFNumberDoubleType, &number));
}

Value value(std::string_view text) {
    return borrowed(string(text).get());
}

Value list(const std::vector<Value>& values) {
    return Value::adopt(reference<CFTypeRef>(make<Array>(values)));
}

Value dictionary(const std::vector<std::pair<Value, Value>>& entries) {
    return Value::adopt(reference<CFTypeRef>(make<Dictionary>(entries)));
}

Value foreignObject() {
    return Value::adopt(reference<CFTypeRef>(make<Foreign>()));
}

CFTypeRef entry(CFDictionaryRef dictionary, CFStringRef key) {
    return CFDictionaryGetValue(dictionary, key);
}

} // namespace quillane::standin

using namespace quillane;

extern "C" {

const CFArrayCallBacks kCFTypeArrayCallBacks{};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

CFTypeID CFArrayGetTypeID() {
    return 7;
}

CFTypeID CFDictionaryGetTypeID() {
    return 8;
}

CFTypeID CFDataGetTypeID() {
    return 9;
}

CFArrayRef CFArrayCreate(CFAllocatorRef /*allocator*/, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks) {
    if (callBacks != &kCFTypeArrayCallBacks) {
        standin::refuse("a list that does not keep what is in it");
    }
    std::vector<standin::Value> kept;
    for (CFIndex i = 0; i < count; ++i) {
        kept.push_back(standin::borrowed(&standin::object(values[i])));
    }
    return standin::reference<CFArrayRef>(standin::make<standin::Array>(std::move(kept)));
}

CFIndex CFArrayGetCount(CFArrayRef array) {
    return static_cast<CFIndex>(standin::as<standin::Array>(array).values().size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    const auto& values = standin::as<standin::Array>(array).values();
    if (index < 0 || index >= static_cast<CFIndex>(values.size())) {
        standin::refuse("an index beyond the list");
    }
    return values[static_cast<std::size_t>(index)].get();
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef /*allocator*/, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
    if (keyCallBacks != &kCFTypeDictionaryKeyCallBacks || valueCallBacks != &kCFTypeDictionaryValueCallBacks) {
        standin::refuse("a dictionary that does not keep what is in it");
    }
    standin::Dictionary::Entries entries;
    for (CFIndex i = 0; i < count; ++i) {
        entries.emplace_back(standin::borrowed(&standin::object(keys[i])),
                             standin::borrowed(&standin::object(values[i])));
    }
    return standin::reference<CFDictionaryRef>(standin::make<standin::Dictionary>(std::move(entries)));
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
    return static_cast<CFIndex>(standin::as<standin::Dictionary>(dictionary).entries().size());
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
    const auto& entries = standin::as<standin::Dictionary>(dictionary).entries();
    const auto found =
        std::ranges::find_if(entries, [key](const auto& entry) { return CFEqual(entry.first.get(), key) != 0; });
    return found == entries.end() ? nullptr : found->second.get();
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values) {
    for (const auto& [key, value] : standin::as<standin::Dictionary>(dictionary).entries()) {
        *keys++ = key.get();
        *values++ = value.get();
    }
}

CFDataRef CFDataCreate(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex count) {
    std::vector<UInt8> copy(bytes, bytes + count);
    return standin::reference<CFDataRef>(standin::make<standin::Data>(std::move(copy)));
}

CFDataRef CFDataCreateWithBytesNoCopy(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex count,
                                      CFAllocatorRef deallocator) {
    if (deallocator != kCFAllocatorNull) {
        standin::refuse("bytes that would be freed");
    }
    return standin::reference<CFDataRef>(standin::make<standin::Data>(bytes, count));
}

CFIndex CFDataGetLength(CFDataRef data) {
    return standin::as<standin::Data>(data).count();
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
    return standin::as<standin::Data>(data).bytes();
}
}
