// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/MacAccessibility.hpp"

#include "platform/macos/CFRef.hpp"
#include "platform/macos/MacStrings.hpp"

#import <ApplicationServices/ApplicationServices.h>

#include <utility>

namespace quillane {

namespace {

struct Element final : AXElement::Handle {
    CFRef<AXUIElementRef> reference;
    float timeout; ///< seconds, handed on to elements read from this one; 0 is the system's own

    Element(CFRef<AXUIElementRef> element, float seconds) : reference(std::move(element)), timeout(0) {
        if (seconds > 0) {
            setTimeout(seconds);
        }
    }

    void setTimeout(float seconds) {
        timeout = seconds;
        AXUIElementSetMessagingTimeout(reference.get(), seconds);
    }

    [[nodiscard]] bool isSame(const Handle& other) const override {
        const auto* element = dynamic_cast<const Element*>(&other);
        return element && CFEqual(reference.get(), element->reference.get());
    }
};

Element& handleOf(const AXElement& element) {
    return static_cast<Element&>(element.handle());
}

AXElement wrap(AXUIElementRef element, float timeout) {
    return AXElement(std::make_shared<Element>(CFRef<AXUIElementRef>::retain(element), timeout));
}

/// A list of nothing but elements as such; `std::monostate` for any other list.
AXValue listValue(CFArrayRef list, float timeout) {
    std::vector<AXElement> elements;
    for (CFIndex i = 0; i < CFArrayGetCount(list); ++i) {
        const auto element = cfCast<AXUIElementRef>(CFArrayGetValueAtIndex(list, i), AXUIElementGetTypeID());
        if (!element) {
            return {};
        }
        elements.push_back(wrap(element, timeout));
    }
    return elements;
}

/// `std::monostate` for types that AXValue does not have, the error placeholders among them.
AXValue value(CFTypeRef object, float timeout) {
    if (const auto text = cfCast<CFStringRef>(object, CFStringGetTypeID())) {
        return utf8(text);
    }
    if (const auto flag = cfCast<CFBooleanRef>(object, CFBooleanGetTypeID())) {
        return static_cast<bool>(CFBooleanGetValue(flag));
    }
    if (const auto element = cfCast<AXUIElementRef>(object, AXUIElementGetTypeID())) {
        return wrap(element, timeout);
    }
    if (const auto list = cfCast<CFArrayRef>(object, CFArrayGetTypeID())) {
        return listValue(list, timeout);
    }
    return {};
}

} // namespace

AXElement MacAccessibility::application(pid_t pid) {
    return AXElement(std::make_shared<Element>(CFRef<AXUIElementRef>::adopt(AXUIElementCreateApplication(pid)), 0.0F));
}

void MacAccessibility::setMessagingTimeout(const AXElement& element, std::chrono::milliseconds timeout) {
    handleOf(element).setTimeout(std::chrono::duration<float>(timeout).count());
}

std::optional<AXValue> MacAccessibility::attribute(const AXElement& element, std::string_view name) {
    @autoreleasepool {
        const auto& handle = handleOf(element);
        CFTypeRef copied = nullptr;
        const auto error = AXUIElementCopyAttributeValue(handle.reference.get(), cfString(name).get(), &copied);
        const auto object = CFRef<CFTypeRef>::adopt(copied);
        if (error != kAXErrorSuccess) {
            return std::nullopt;
        }
        auto result = value(object.get(), handle.timeout);
        return std::holds_alternative<std::monostate>(result) ? std::nullopt : std::optional(std::move(result));
    }
}

std::optional<std::vector<AXValue>> MacAccessibility::attributes(const AXElement& element,
                                                                 std::span<const std::string_view> names) {
    @autoreleasepool {
        const auto& handle = handleOf(element);
        NSMutableArray<NSString*>* list = [NSMutableArray arrayWithCapacity:names.size()];
        for (const auto name : names) {
            [list addObject:nsString(name)];
        }
        CFArrayRef copied = nullptr;
        const auto error = AXUIElementCopyMultipleAttributeValues(handle.reference.get(), (__bridge CFArrayRef)list,
                                                                  AXCopyMultipleAttributeOptions{}, &copied);
        const auto values = CFRef<CFArrayRef>::adopt(copied);
        if (error != kAXErrorSuccess || !values ||
            CFArrayGetCount(values.get()) != static_cast<CFIndex>(names.size())) {
            return std::nullopt;
        }
        std::vector<AXValue> result;
        result.reserve(names.size());
        for (CFIndex i = 0; i < CFArrayGetCount(values.get()); ++i) {
            result.push_back(value(CFArrayGetValueAtIndex(values.get(), i), handle.timeout));
        }
        return result;
    }
}

bool MacAccessibility::isAttributeSettable(const AXElement& element, std::string_view name) {
    @autoreleasepool {
        Boolean settable = false;
        const auto error =
            AXUIElementIsAttributeSettable(handleOf(element).reference.get(), cfString(name).get(), &settable);
        return error == kAXErrorSuccess && settable;
    }
}

} // namespace quillane
