// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/accessibility/MacAccessibilityValues.hpp"

#include "platform/macos/foundation/MacStrings.hpp"

#include <utility>

namespace quillane {

namespace {

/// A value of an application-defined type, compared by CFEqual.
struct OpaqueValue final : AXOpaqueValue::Handle {
    CFRef<CFTypeRef> object;

    explicit OpaqueValue(CFTypeRef value) : object(CFRef<CFTypeRef>::retain(value)) {}

    [[nodiscard]] bool isSame(const Handle& other) const override {
        const auto* value = dynamic_cast<const OpaqueValue*>(&other);
        return value && CFEqual(object.get(), value->object.get());
    }
};

/// A list of elements as such; `std::monostate` for any other list.
AXValue listValue(CFArrayRef list, float timeout) {
    std::vector<AXElement> elements;
    for (CFIndex i = 0; i < CFArrayGetCount(list); ++i) {
        const auto element = cfCast<AXUIElementRef>(CFArrayGetValueAtIndex(list, i), AXUIElementGetTypeID());
        if (!element) {
            return {};
        }
        elements.push_back(axElement(element, timeout));
    }
    return elements;
}

/// A range as such, `std::monostate` for the placeholder of an error, any other structure as an opaque value.
AXValue structureValue(AXValueRef structure) {
    if (AXValueGetType(structure) == kAXValueTypeAXError) {
        return {};
    }
    CFRange range{};
    if (AXValueGetType(structure) == kAXValueTypeCFRange && AXValueGetValue(structure, kAXValueTypeCFRange, &range)) {
        return AXTextRange{range.location, range.length};
    }
    return AXOpaqueValue(std::make_shared<OpaqueValue>(structure));
}

} // namespace

MacElement::MacElement(CFRef<AXUIElementRef> element, float seconds) : reference(std::move(element)), pid(0) {
    if (AXUIElementGetPid(reference.get(), &pid) != kAXErrorSuccess) {
        pid = 0;
    }
    if (seconds > 0) {
        setTimeout(seconds);
    }
}

void MacElement::setTimeout(float seconds) {
    timeout = seconds;
    AXUIElementSetMessagingTimeout(reference.get(), seconds);
}

bool MacElement::isSame(const Handle& other) const {
    const auto* element = dynamic_cast<const MacElement*>(&other);
    return element && CFEqual(reference.get(), element->reference.get());
}

MacElement& macElement(const AXElement& element) {
    return static_cast<MacElement&>(element.handle());
}

AXElement axElement(AXUIElementRef element, float timeout) {
    return AXElement(std::make_shared<MacElement>(CFRef<AXUIElementRef>::retain(element), timeout));
}

AXValue axValue(CFTypeRef object, float timeout) {
    if (const auto text = cfCast<CFStringRef>(object, CFStringGetTypeID())) {
        return utf8(text);
    }
    if (const auto flag = cfCast<CFBooleanRef>(object, CFBooleanGetTypeID())) {
        return static_cast<bool>(CFBooleanGetValue(flag));
    }
    if (const auto number = cfCast<CFNumberRef>(object, CFNumberGetTypeID()); number && !CFNumberIsFloatType(number)) {
        std::int64_t whole = 0;
        CFNumberGetValue(number, kCFNumberSInt64Type, &whole);
        return whole;
    }
    if (const auto element = cfCast<AXUIElementRef>(object, AXUIElementGetTypeID())) {
        return axElement(element, timeout);
    }
    if (const auto list = cfCast<CFArrayRef>(object, CFArrayGetTypeID())) {
        return listValue(list, timeout);
    }
    if (const auto url = cfCast<CFURLRef>(object, CFURLGetTypeID())) {
        return utf8(CFURLGetString(url));
    }
    if (const auto structure = cfCast<AXValueRef>(object, AXValueGetTypeID())) {
        return structureValue(structure);
    }
    if (!object || CFGetTypeID(object) == CFNullGetTypeID()) {
        return {};
    }
    return AXOpaqueValue(std::make_shared<OpaqueValue>(object)); // shared by its copies
}

CFRef<CFTypeRef> accessibilityObject(const AXValue& value) {
    if (const auto* flag = std::get_if<bool>(&value)) {
        return CFRef<CFTypeRef>::retain(*flag ? kCFBooleanTrue : kCFBooleanFalse);
    }
    if (const auto* number = std::get_if<std::int64_t>(&value)) {
        return CFRef<CFTypeRef>::adopt(CFNumberCreate(nullptr, kCFNumberSInt64Type, number));
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        return CFRef<CFTypeRef>::retain(cfString(*text).get());
    }
    if (const auto* element = std::get_if<AXElement>(&value)) {
        return CFRef<CFTypeRef>::retain(macElement(*element).reference.get());
    }
    if (const auto* range = std::get_if<AXTextRange>(&value)) {
        const auto cfRange = CFRangeMake(range->location, range->length);
        return CFRef<CFTypeRef>::adopt(AXValueCreate(kAXValueTypeCFRange, &cfRange));
    }
    if (const auto* opaque = std::get_if<AXOpaqueValue>(&value)) {
        const auto* handle = dynamic_cast<const OpaqueValue*>(&opaque->handle());
        return CFRef<CFTypeRef>::retain(handle ? handle->object.get() : nullptr);
    }
    return {};
}

} // namespace quillane
