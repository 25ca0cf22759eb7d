// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/MacAccessibility.hpp"

#include "platform/macos/CFRef.hpp"
#include "platform/macos/MacCallback.hpp"
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

/// A value of a type of the application's own, compared by CFEqual.
struct OpaqueValue final : AXOpaqueValue::Handle {
    CFRef<CFTypeRef> object;

    explicit OpaqueValue(CFTypeRef value) : object(CFRef<CFTypeRef>::retain(value)) {}

    [[nodiscard]] bool isSame(const Handle& other) const override {
        const auto* value = dynamic_cast<const OpaqueValue*>(&other);
        return value && CFEqual(object.get(), value->object.get());
    }
};

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

/// `std::monostate` for null and for lists of other things than elements.
AXValue value(CFTypeRef object, float timeout) {
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
        return wrap(element, timeout);
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

/// The object that stands for a value; null for lists and for no value.
CFRef<CFTypeRef> objectOf(const AXValue& value) {
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
        return CFRef<CFTypeRef>::retain(handleOf(*element).reference.get());
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

/// One observed notification. The observer's source leaves the run loop when this goes.
class Observation {
public:
    Observation(CFRef<AXObserverRef> observer, CFRef<AXUIElementRef> application, CFRef<CFStringRef> name,
                float timeout, std::function<void(const AXElement&)> handler)
        : observer_(std::move(observer)),
          application_(std::move(application)),
          name_(std::move(name)),
          timeout_(timeout),
          handler_(std::move(handler)) {}

    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;

    ~Observation() {
        if (begun_) {
            CFRunLoopRemoveSource(CFRunLoopGetMain(), AXObserverGetRunLoopSource(observer_.get()),
                                  kCFRunLoopCommonModes);
            AXObserverRemoveNotification(observer_.get(), application_.get(), name_.get());
        }
    }

    [[nodiscard]] bool begin() {
        if (AXObserverAddNotification(observer_.get(), application_.get(), name_.get(), this) != kAXErrorSuccess) {
            return false;
        }
        CFRunLoopAddSource(CFRunLoopGetMain(), AXObserverGetRunLoopSource(observer_.get()), kCFRunLoopCommonModes);
        begun_ = true;
        return true;
    }

    static void notified(AXObserverRef, AXUIElementRef element, CFStringRef, void* self) {
        @autoreleasepool {
            guarded([&] {
                const auto& observation = *static_cast<Observation*>(self);
                const auto observer = observation.observer_; // the handler may end the observation
                const auto handler = observation.handler_;
                handler(wrap(element, observation.timeout_));
            });
        }
    }

private:
    CFRef<AXObserverRef> observer_;
    CFRef<AXUIElementRef> application_;
    CFRef<CFStringRef> name_;
    float timeout_;
    std::function<void(const AXElement&)> handler_;
    bool begun_ = false;
};

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

bool MacAccessibility::setAttribute(const AXElement& element, std::string_view name, const AXValue& value) {
    @autoreleasepool {
        const auto object = objectOf(value);
        return object && AXUIElementSetAttributeValue(handleOf(element).reference.get(), cfString(name).get(),
                                                      object.get()) == kAXErrorSuccess;
    }
}

std::vector<std::string> MacAccessibility::actionNames(const AXElement& element) {
    @autoreleasepool {
        CFArrayRef copied = nullptr;
        const auto error = AXUIElementCopyActionNames(handleOf(element).reference.get(), &copied);
        const auto list = CFRef<CFArrayRef>::adopt(copied);
        std::vector<std::string> names;
        for (CFIndex i = 0; error == kAXErrorSuccess && list && i < CFArrayGetCount(list.get()); ++i) {
            if (const auto name = cfCast<CFStringRef>(CFArrayGetValueAtIndex(list.get(), i), CFStringGetTypeID())) {
                names.push_back(utf8(name));
            }
        }
        return names;
    }
}

AXActionResult MacAccessibility::performAction(const AXElement& element, std::string_view name) {
    @autoreleasepool {
        switch (AXUIElementPerformAction(handleOf(element).reference.get(), cfString(name).get())) {
        case kAXErrorSuccess:
            return AXActionResult::done;
        case kAXErrorCannotComplete:
            return AXActionResult::cannotComplete;
        default:
            return AXActionResult::failed;
        }
    }
}

std::optional<core::Subscription> MacAccessibility::observe(const AXElement& application, std::string_view name,
                                                            std::function<void(const AXElement&)> handler) {
    @autoreleasepool {
        const auto& handle = handleOf(application);
        pid_t pid = 0;
        AXObserverRef created = nullptr;
        if (AXUIElementGetPid(handle.reference.get(), &pid) != kAXErrorSuccess ||
            AXObserverCreate(pid, &Observation::notified, &created) != kAXErrorSuccess) {
            return std::nullopt;
        }
        auto observation = std::make_shared<Observation>(CFRef<AXObserverRef>::adopt(created), handle.reference,
                                                         cfString(name), handle.timeout, std::move(handler));
        if (!observation->begin()) {
            return std::nullopt;
        }
        return core::Subscription([observation]() mutable { observation.reset(); }); // shared: std::function copies
    }
}

} // namespace quillane
