// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/Accessibility.hpp"

#include "standins/macos/AccessibilityObjects.hpp"
#include "standins/macos/Mac.hpp"
#include "standins/macos/Strings.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace quillane::standin {

namespace {

constexpr std::chrono::duration<double> systemTimeout{6};
constexpr std::array<std::string_view, 2> notifications{"AXMenuOpened", "AXFocusedUIElementChanged"};

} // namespace

AccessibleElement& AccessibleElement::with(const std::string& attribute, Value held) {
    attributes_.insert_or_assign(attribute, std::move(held));
    return *this;
}

AccessibleElement& AccessibleElement::with(const std::string& attribute, const AccessibleElement& element) {
    attributes_.insert_or_assign(attribute, &element);
    return *this;
}

AccessibleElement& AccessibleElement::failing(const std::string& attribute, AXError error) {
    attributes_.insert_or_assign(attribute, error);
    return *this;
}

AccessibleElement& AccessibleElement::settable(const std::string& attribute) {
    settable_.insert(attribute);
    return *this;
}

AccessibleElement& AccessibleElement::withAction(const std::string& name, std::function<AXError()> effect) {
    actions_.insert_or_assign(name, std::move(effect));
    return *this;
}

AccessibleElement& AccessibleElement::withBounds(std::function<Value(const CFRange& range)> bounds) {
    bounds_ = std::move(bounds);
    return *this;
}

AccessibleElement& AccessibleElement::withText(std::u16string text) {
    text_ = std::move(text);
    return with("AXSelectedText", value("")).settable("AXSelectedText");
}

AccessibleElement& AccessibleElement::add(std::string_view role) {
    auto& child = *children_.emplace_back(std::make_unique<AccessibleElement>(role));
    child.parent_ = this;
    return child;
}

AccessibleApplication& AccessibilityServer::application(pid_t pid) {
    auto& application = applications_[pid];
    if (!application) {
        application = std::make_unique<AccessibleApplication>();
    }
    return *application;
}

AXUIElementRef AccessibilityServer::create(pid_t pid, const AccessibleElement* element) {
    const auto found = applications_.find(pid);
    const bool isRoot = found != applications_.end() && element == &found->second->root;
    return reference<AXUIElementRef>(make<ElementReference>(pid, isRoot ? nullptr : element));
}

AccessibilityServer::Answer AccessibilityServer::ask(AXUIElementRef element) {
    const auto& asked = as<ElementReference>(element);
    const auto found = applications_.find(asked.pid);
    if (!isTrusted) {
        return {.error = kAXErrorAPIDisabled};
    }
    if (found == applications_.end()) {
        return {.error = kAXErrorInvalidUIElement};
    }
    auto& application = *found->second;
    ++application.calls;
    if (application.refusesAtOnce) {
        return {.error = kAXErrorCannotComplete};
    }
    const auto timeout = asked.timeout > 0 ? std::chrono::duration<double>(asked.timeout) : systemTimeout;
    if (application.hangs || application.answersAfter > timeout) {
        Mac::current().pass(timeout);
        return {.error = kAXErrorCannotComplete};
    }
    Mac::current().pass(application.answersAfter);
    auto* answering = asked.element != nullptr ? const_cast<AccessibleElement*>(asked.element) : &application.root;
    return answering->isGone ? Answer{.error = kAXErrorInvalidUIElement} : Answer{.element = answering};
}

AXError AccessibilityServer::read(pid_t pid, AccessibleElement& element, const std::string& attribute, Value* result) {
    const auto adopt = [&](const AccessibleElement& other) { return Value::adopt(create(pid, &other)); };
    const auto found = element.attributes_.find(attribute);
    if (found != element.attributes_.end()) {
        if (const auto* error = std::get_if<AXError>(&found->second)) {
            return *error;
        }
        const auto* other = std::get_if<const AccessibleElement*>(&found->second);
        *result = other != nullptr ? adopt(**other) : std::get<Value>(found->second);
        return kAXErrorSuccess;
    }
    if (attribute == "AXChildren") {
        std::vector<Value> children;
        for (const auto& child : element.children_) {
            if (!child->isGone) {
                children.push_back(adopt(*child));
            }
        }
        *result = list(children);
        return kAXErrorSuccess;
    }
    if (attribute == "AXParent" && element.parent_ != nullptr) {
        *result = adopt(*element.parent_);
        return kAXErrorSuccess;
    }
    return kAXErrorAttributeUnsupported;
}

AXError AccessibilityServer::copy(AXUIElementRef element, const std::string& attribute, CFTypeRef* result) {
    const auto answer = ask(element);
    Value held;
    const auto error = answer.element != nullptr
                           ? read(as<ElementReference>(element).pid, *answer.element, attribute, &held)
                           : answer.error;
    *result = error == kAXErrorSuccess && held ? CFRetain(held.get()) : nullptr;
    return error;
}

AXError AccessibilityServer::copyFor(AXUIElementRef element, const std::string& attribute, CFTypeRef parameter,
                                     CFTypeRef* result) {
    const auto answer = ask(element);
    if (answer.element == nullptr) {
        return answer.error;
    }
    CFRange range{};
    const auto& held = answer.element->text_;
    const bool isRange = CFGetTypeID(parameter) == AXValueGetTypeID() &&
                         AXValueGetValue(reinterpret_cast<AXValueRef>(parameter), kAXValueTypeCFRange, &range);
    if (attribute == "AXStringForRange" && held) {
        const bool isInside = isRange && range.location >= 0 && range.length >= 0 &&
                              range.location + range.length <= static_cast<CFIndex>(held->size());
        if (!isInside) {
            return kAXErrorIllegalArgument;
        }
        *result = reference<CFTypeRef>(make<String>(
            held->substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length))));
        return kAXErrorSuccess;
    }
    if (attribute != "AXBoundsForRange" || !answer.element->bounds_ || !isRange) {
        return attribute == "AXBoundsForRange" && !isRange ? kAXErrorIllegalArgument : kAXErrorAttributeUnsupported;
    }
    *result = CFRetain(answer.element->bounds_(range).get());
    return kAXErrorSuccess;
}

AXError AccessibilityServer::copySeveral(AXUIElementRef element, CFArrayRef names, CFArrayRef* result) {
    const auto answer = ask(element);
    if (answer.element == nullptr) {
        return answer.error;
    }
    std::vector<Value> values;
    for (CFIndex i = 0; i < CFArrayGetCount(names); ++i) {
        const auto name = text(CFArrayGetValueAtIndex(names, i));
        if (name == answersShortly) {
            continue;
        }
        Value held;
        const auto error = read(as<ElementReference>(element).pid, *answer.element, name, &held);
        values.push_back(error == kAXErrorSuccess ? held : errorValue(error));
    }
    *result = static_cast<CFArrayRef>(CFRetain(list(values).get()));
    return kAXErrorSuccess;
}

AXError AccessibilityServer::isSettable(AXUIElementRef element, const std::string& attribute, Boolean* result) {
    const auto answer = ask(element);
    if (answer.element == nullptr) {
        return answer.error;
    }
    *result = answer.element->settable_.contains(attribute);
    return answer.element->attributes_.contains(attribute) ? kAXErrorSuccess : kAXErrorAttributeUnsupported;
}

AXError AccessibilityServer::set(AXUIElementRef element, const std::string& attribute, CFTypeRef held) {
    const auto answer = ask(element);
    if (answer.element == nullptr) {
        return answer.error;
    }
    const auto found = answer.element->attributes_.find(attribute);
    if (found == answer.element->attributes_.end() || !answer.element->settable_.contains(attribute)) {
        return kAXErrorAttributeUnsupported;
    }
    if (const auto* current = std::get_if<Value>(&found->second);
        current != nullptr && CFGetTypeID(current->get()) != CFGetTypeID(held)) {
        return kAXErrorIllegalArgument;
    }
    if (attribute == "AXSelectedText" && answer.element->text_) {
        return write(*answer.element, held);
    }
    found->second = borrowed(held);
    return kAXErrorSuccess;
}

/// In the place of the selected text; the cursor is behind it then.
AXError AccessibilityServer::write(AccessibleElement& element, CFTypeRef text) {
    const auto selection = element.attributes_.find("AXSelectedTextRange");
    CFRange range{};
    if (selection == element.attributes_.end() ||
        !AXValueGetValue(reinterpret_cast<AXValueRef>(std::get<Value>(selection->second).get()), kAXValueTypeCFRange,
                         &range)) {
        return kAXErrorFailure;
    }
    const auto& written = as<String>(text).text();
    element.text_->replace(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length), written);
    element.with("AXSelectedTextRange", rangeValue(range.location + static_cast<CFIndex>(written.size()), 0));
    return kAXErrorSuccess;
}

AXError AccessibilityServer::copyActions(AXUIElementRef element, CFArrayRef* result) {
    const auto answer = ask(element);
    if (answer.element == nullptr) {
        return answer.error;
    }
    std::vector<Value> names;
    for (const auto& [name, effect] : answer.element->actions_) {
        names.push_back(value(name));
    }
    names.push_back(value(1)); // a value that is not a name is ignored
    *result = static_cast<CFArrayRef>(CFRetain(list(names).get()));
    return kAXErrorSuccess;
}

AXError AccessibilityServer::perform(AXUIElementRef element, const std::string& action) {
    const auto answer = ask(element);
    if (answer.element == nullptr) {
        return answer.error;
    }
    const auto found = answer.element->actions_.find(action);
    return found == answer.element->actions_.end() ? kAXErrorActionUnsupported : found->second();
}

AXError AccessibilityServer::observe(AXObserverRef observer, AXUIElementRef element, const std::string& name,
                                     void* context) {
    const auto answer = ask(element);
    if (answer.element == nullptr) {
        return answer.error;
    }
    if (std::ranges::find(notifications, name) == notifications.end()) {
        return kAXErrorNotificationUnsupported;
    }
    observations_.push_back({observer, as<Observer>(observer).pid, name, context});
    return kAXErrorSuccess;
}

AXError AccessibilityServer::endObserving(AXObserverRef observer, const std::string& name) {
    const auto ended = std::erase_if(observations_, [&](const Observation& observation) {
        return observation.observer == observer && observation.name == name;
    });
    EXPECT_EQ(ended, 1U) << "a notification that was not observed";
    return ended == 1 ? kAXErrorSuccess : kAXErrorNotificationNotRegistered;
}

void AccessibilityServer::notify(pid_t pid, const std::string& name, const AccessibleElement& about) {
    Mac::current().post([this, pid, name, &about] {
        const auto observations = observations_;
        for (const auto& observation : observations) {
            const bool isThere =
                std::ranges::find(observations_, observation.observer, &Observation::observer) != observations_.end();
            if (!isThere || observation.pid != pid || observation.name != name) {
                continue;
            }
            auto& observer = as<Observer>(observation.observer);
            if (Mac::current().runLoops.servesAlways(observer.source)) {
                const auto element = CFRef<AXUIElementRef>::adopt(create(pid, &about));
                observer.callback(observation.observer, element.get(), string(name).get(), observation.context);
            }
        }
    });
}

void AccessibilityServer::settle() {
    EXPECT_TRUE(observations_.empty()) << "a notification is still observed";
    observations_.clear();
    applications_.clear();
}

} // namespace quillane::standin

using namespace quillane;
using standin::ElementReference;
using standin::Mac;
using standin::text;

extern "C" {

AXUIElementRef AXUIElementCreateApplication(pid_t pid) {
    return Mac::current().accessibility.create(pid);
}

AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid) {
    *pid = standin::as<ElementReference>(element).pid;
    return *pid > 0 ? kAXErrorSuccess : kAXErrorIllegalArgument;
}

AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float seconds) {
    standin::as<ElementReference>(element).timeout = seconds;
    return kAXErrorSuccess;
}

AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef name, CFTypeRef* value) {
    return Mac::current().accessibility.copy(element, text(name), value);
}

AXError AXUIElementCopyParameterizedAttributeValue(AXUIElementRef element, CFStringRef name, CFTypeRef parameter,
                                                   CFTypeRef* value) {
    return Mac::current().accessibility.copyFor(element, text(name), parameter, value);
}

AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef names,
                                               AXCopyMultipleAttributeOptions /*options*/, CFArrayRef* values) {
    return Mac::current().accessibility.copySeveral(element, names, values);
}

AXError AXUIElementIsAttributeSettable(AXUIElementRef element, CFStringRef name, Boolean* settable) {
    return Mac::current().accessibility.isSettable(element, text(name), settable);
}

AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef name, CFTypeRef value) {
    return Mac::current().accessibility.set(element, text(name), value);
}

AXError AXUIElementCopyActionNames(AXUIElementRef element, CFArrayRef* names) {
    return Mac::current().accessibility.copyActions(element, names);
}

AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action) {
    return Mac::current().accessibility.perform(element, text(action));
}

AXError AXObserverCreate(pid_t pid, AXObserverCallback callback, AXObserverRef* observer) {
    if (!Mac::current().accessibility.makesObservers) {
        return kAXErrorFailure;
    }
    *observer = standin::reference<AXObserverRef>(standin::make<standin::Observer>(pid, callback));
    return kAXErrorSuccess;
}

AXError AXObserverAddNotification(AXObserverRef observer, AXUIElementRef element, CFStringRef notification,
                                  void* context) {
    return Mac::current().accessibility.observe(observer, element, text(notification), context);
}

AXError AXObserverRemoveNotification(AXObserverRef observer, AXUIElementRef /*element*/, CFStringRef notification) {
    return Mac::current().accessibility.endObserving(observer, text(notification));
}

CFRunLoopSourceRef AXObserverGetRunLoopSource(AXObserverRef observer) {
    return standin::reference<CFRunLoopSourceRef>(standin::as<standin::Observer>(observer).source);
}
}
