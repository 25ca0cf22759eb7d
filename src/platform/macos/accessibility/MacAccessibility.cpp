// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/accessibility/MacAccessibility.hpp"

#include "platform/macos/accessibility/MacAccessibilityValues.hpp"
#include "platform/macos/foundation/CFRef.hpp"
#include "platform/macos/foundation/MacAutoreleasePool.hpp"
#include "platform/macos/foundation/MacCallback.hpp"
#include "platform/macos/foundation/MacCollections.hpp"
#include "platform/macos/foundation/MacStrings.hpp"

#include <ApplicationServices/ApplicationServices.h>

#include <algorithm>
#include <utility>

namespace quillane {

namespace {

/// One observed notification. Destruction removes the observer's source from the run loop.
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

    [[nodiscard]] AXError begin() {
        const auto error = AXObserverAddNotification(observer_.get(), application_.get(), name_.get(), this);
        if (error == kAXErrorSuccess) {
            CFRunLoopAddSource(CFRunLoopGetMain(), AXObserverGetRunLoopSource(observer_.get()), kCFRunLoopCommonModes);
            begun_ = true;
        }
        return error;
    }

    static void notified(AXObserverRef, AXUIElementRef element, CFStringRef, void* self) {
        const AutoreleasePool pool;
        guarded([&] {
            const auto& observation = *static_cast<Observation*>(self);
            const auto observer = observation.observer_; // the handler may end the observation
            const auto handler = observation.handler_;
            handler(axElement(element, observation.timeout_));
        });
    }

private:
    CFRef<AXObserverRef> observer_;
    CFRef<AXUIElementRef> application_;
    CFRef<CFStringRef> name_;
    float timeout_;
    std::function<void(const AXElement&)> handler_;
    bool begun_ = false;
};

/// Asks an application for something, unless it has been silent just now. True when it has answered with success.
template <typename Call>
bool succeeds(MacSilentProcesses& silent, const MacElement& element, Call&& call) {
    if (!silent.mayAsk(element.pid, element.timeout)) {
        return false;
    }
    const auto begin = silent.now();
    const AXError error = call();
    if (error == kAXErrorCannotComplete) {
        silent.hasNotAnswered(element.pid, begin);
    } else {
        silent.hasAnswered(element.pid);
    }
    return error == kAXErrorSuccess;
}

} // namespace

MacAccessibility::MacAccessibility(MacSilentProcesses::Now now) : silent_(std::move(now)) {}

AXElement MacAccessibility::application(pid_t pid) {
    return AXElement(
        std::make_shared<MacElement>(CFRef<AXUIElementRef>::adopt(AXUIElementCreateApplication(pid)), 0.0F));
}

void MacAccessibility::setMessagingTimeout(const AXElement& element, std::chrono::milliseconds timeout) {
    macElement(element).setTimeout(std::chrono::duration<float>(timeout).count());
}

std::optional<AXValue> MacAccessibility::attribute(const AXElement& element, std::string_view name) {
    const AutoreleasePool pool;
    const auto& handle = macElement(element);
    CFTypeRef copied = nullptr;
    const bool isRead = succeeds(silent_, handle, [&] {
        return AXUIElementCopyAttributeValue(handle.reference.get(), cfString(name).get(), &copied);
    });
    const auto object = CFRef<CFTypeRef>::adopt(copied);
    if (!isRead) {
        return std::nullopt;
    }
    auto result = axValue(object.get(), handle.timeout);
    return std::holds_alternative<std::monostate>(result) ? std::nullopt : std::optional(std::move(result));
}

std::optional<std::vector<AXValue>> MacAccessibility::attributes(const AXElement& element,
                                                                 std::span<const std::string_view> names) {
    const AutoreleasePool pool;
    const auto& handle = macElement(element);
    std::vector<CFRef<CFStringRef>> strings;
    std::ranges::transform(names, std::back_inserter(strings), cfString);
    std::vector<CFTypeRef> borrowed;
    std::ranges::transform(strings, std::back_inserter(borrowed), &CFRef<CFStringRef>::get);
    const auto list = cfArray(std::move(borrowed));
    CFArrayRef copied = nullptr;
    const bool isRead = succeeds(silent_, handle, [&] {
        return AXUIElementCopyMultipleAttributeValues(handle.reference.get(), list.get(),
                                                      AXCopyMultipleAttributeOptions{}, &copied);
    });
    const auto values = CFRef<CFArrayRef>::adopt(copied);
    if (!isRead || !values || CFArrayGetCount(values.get()) != static_cast<CFIndex>(names.size())) {
        return std::nullopt;
    }
    std::vector<AXValue> result;
    result.reserve(names.size());
    for (CFIndex i = 0; i < CFArrayGetCount(values.get()); ++i) {
        result.push_back(axValue(CFArrayGetValueAtIndex(values.get(), i), handle.timeout));
    }
    return result;
}

bool MacAccessibility::isAnswering(const AXElement& element) {
    const auto& handle = macElement(element);
    return silent_.mayAsk(handle.pid, handle.timeout);
}

bool MacAccessibility::isAttributeSettable(const AXElement& element, std::string_view name) {
    const AutoreleasePool pool;
    const auto& handle = macElement(element);
    Boolean settable = 0;
    const bool isRead = succeeds(silent_, handle, [&] {
        return AXUIElementIsAttributeSettable(handle.reference.get(), cfString(name).get(), &settable);
    });
    return isRead && settable != 0;
}

bool MacAccessibility::setAttribute(const AXElement& element, std::string_view name, const AXValue& value) {
    const AutoreleasePool pool;
    const auto& handle = macElement(element);
    const auto object = accessibilityObject(value);
    return object && succeeds(silent_, handle, [&] {
               return AXUIElementSetAttributeValue(handle.reference.get(), cfString(name).get(), object.get());
           });
}

std::optional<AXRect> MacAccessibility::frame(const AXElement& element) {
    const AutoreleasePool pool;
    const auto& handle = macElement(element);
    const auto read = [&](CFStringRef name, AXValueType type, void* result) {
        CFTypeRef copied = nullptr;
        const bool isRead = succeeds(
            silent_, handle, [&] { return AXUIElementCopyAttributeValue(handle.reference.get(), name, &copied); });
        const auto object = CFRef<CFTypeRef>::adopt(copied);
        const auto structure = cfCast<AXValueRef>(object.get(), AXValueGetTypeID());
        return isRead && structure && AXValueGetValue(structure, type, result);
    };
    CGPoint position{};
    CGSize size{};
    if (!read(cfString("AXPosition").get(), kAXValueTypeCGPoint, &position) ||
        !read(cfString("AXSize").get(), kAXValueTypeCGSize, &size)) {
        return std::nullopt;
    }
    return AXRect{position.x, position.y, size.width, size.height};
}

std::optional<AXRect> MacAccessibility::frameOfText(const AXElement& element, const AXTextRange& range) {
    const AutoreleasePool pool;
    const auto& handle = macElement(element);
    const auto parameter = accessibilityObject(range);
    CFTypeRef copied = nullptr;
    const bool isRead = succeeds(silent_, handle, [&] {
        return AXUIElementCopyParameterizedAttributeValue(handle.reference.get(), cfString("AXBoundsForRange").get(),
                                                          parameter.get(), &copied);
    });
    const auto object = CFRef<CFTypeRef>::adopt(copied);
    const auto structure = cfCast<AXValueRef>(object.get(), AXValueGetTypeID());
    CGRect bounds{};
    if (!isRead || !structure || !AXValueGetValue(structure, kAXValueTypeCGRect, &bounds)) {
        return std::nullopt;
    }
    return AXRect{bounds.origin.x, bounds.origin.y, bounds.size.width, bounds.size.height};
}

std::optional<std::string> MacAccessibility::textIn(const AXElement& element, const AXTextRange& range) {
    const AutoreleasePool pool;
    const auto& handle = macElement(element);
    const auto parameter = accessibilityObject(range);
    CFTypeRef copied = nullptr;
    const bool isRead = succeeds(silent_, handle, [&] {
        return AXUIElementCopyParameterizedAttributeValue(handle.reference.get(), cfString("AXStringForRange").get(),
                                                          parameter.get(), &copied);
    });
    const auto object = CFRef<CFTypeRef>::adopt(copied);
    const auto string = cfCast<CFStringRef>(object.get(), CFStringGetTypeID());
    return isRead && string ? std::optional(utf8(string)) : std::nullopt;
}

/// The selected text is what can be written: the range is selected first, and it must be.
AXReplacement MacAccessibility::replaceText(const AXElement& element, const AXTextRange& range,
                                            const std::string& expected, const std::string& text) {
    const auto selected = [&] { return attribute(element, "AXSelectedTextRange"); };
    const auto before = selected();
    const auto current = textIn(element, range);
    if (!before || !current || !isAttributeSettable(element, "AXSelectedText")) {
        return AXReplacement::failed;
    }
    if (*current != expected) {
        return AXReplacement::differs;
    }
    if (*before != AXValue(range) &&
        (!setAttribute(element, "AXSelectedTextRange", range) || selected() != AXValue(range))) {
        setAttribute(element, "AXSelectedTextRange", *before);
        return AXReplacement::failed;
    }
    if (!setAttribute(element, "AXSelectedText", text)) {
        setAttribute(element, "AXSelectedTextRange", *before);
        return AXReplacement::failed;
    }
    return AXReplacement::done;
}

std::vector<std::string> MacAccessibility::actionNames(const AXElement& element) {
    const AutoreleasePool pool;
    const auto& handle = macElement(element);
    CFArrayRef copied = nullptr;
    const bool isRead =
        succeeds(silent_, handle, [&] { return AXUIElementCopyActionNames(handle.reference.get(), &copied); });
    const auto list = CFRef<CFArrayRef>::adopt(copied);
    std::vector<std::string> names;
    for (CFIndex i = 0; isRead && list && i < CFArrayGetCount(list.get()); ++i) {
        if (const auto name = cfCast<CFStringRef>(CFArrayGetValueAtIndex(list.get(), i), CFStringGetTypeID())) {
            names.push_back(utf8(name));
        }
    }
    return names;
}

AXActionResult MacAccessibility::performAction(const AXElement& element, std::string_view name) {
    const AutoreleasePool pool;
    switch (AXUIElementPerformAction(macElement(element).reference.get(), cfString(name).get())) {
    case kAXErrorSuccess:
        return AXActionResult::done;
    case kAXErrorCannotComplete:
        return AXActionResult::cannotComplete;
    default:
        return AXActionResult::failed;
    }
}

std::optional<core::Subscription> MacAccessibility::observe(const AXElement& application, std::string_view name,
                                                            std::function<void(const AXElement&)> handler) {
    const AutoreleasePool pool;
    const auto& handle = macElement(application);
    AXObserverRef created = nullptr;
    if (AXObserverCreate(handle.pid, &Observation::notified, &created) != kAXErrorSuccess) {
        return std::nullopt;
    }
    auto observation = std::make_shared<Observation>(CFRef<AXObserverRef>::adopt(created), handle.reference,
                                                     cfString(name), handle.timeout, std::move(handler));
    if (!succeeds(silent_, handle, [&] { return observation->begin(); })) {
        return std::nullopt;
    }
    return core::Subscription([observation]() mutable { observation.reset(); }); // shared: std::function copies
}

} // namespace quillane
