// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "standins/macos/AccessibilityObjects.hpp"

#include <ApplicationServices/ApplicationServices.h>

namespace quillane::standin {

namespace {

bool isSame(const CFRange& one, const CFRange& other) {
    return one.location == other.location && one.length == other.length;
}

bool isSame(const CGSize& one, const CGSize& other) {
    return one.width == other.width && one.height == other.height;
}

bool isSame(const CGPoint& one, const CGPoint& other) {
    return one.x == other.x && one.y == other.y;
}

bool isSame(const CGRect& one, const CGRect& other) {
    return isSame(one.origin, other.origin) && isSame(one.size, other.size);
}

bool isSame(AXError one, AXError other) {
    return one == other;
}

Value structure(Structure::Content content) {
    return Value::adopt(reference<CFTypeRef>(make<Structure>(content)));
}

} // namespace

bool Structure::equals(const Object& other) const {
    return std::visit(
        [](const auto& one, const auto& two) {
            if constexpr (std::is_same_v<decltype(one), decltype(two)>) {
                return isSame(one, two);
            } else {
                return false;
            }
        },
        content_, static_cast<const Structure&>(other).content_);
}

AXValueType Structure::structureType() const {
    constexpr AXValueType types[]{kAXValueTypeCFRange, kAXValueTypeAXError, kAXValueTypeCGSize, kAXValueTypeCGPoint,
                                  kAXValueTypeCGRect};
    return types[content_.index()];
}

Value rangeValue(CFIndex location, CFIndex length) {
    return structure(CFRange{location, length});
}

Value pointValue(double x, double y) {
    return structure(CGPoint{x, y});
}

Value sizeValue(double width, double height) {
    return structure(CGSize{width, height});
}

Value rectangleValue(double x, double y, double width, double height) {
    return structure(CGRect{{x, y}, {width, height}});
}

Value errorValue(AXError error) {
    return structure(error);
}

Value elementValue(pid_t pid, const AccessibleElement& element) {
    return Value::adopt(reference<CFTypeRef>(make<ElementReference>(pid, &element)));
}

} // namespace quillane::standin

using namespace quillane;
using standin::Structure;

extern "C" {

CFTypeID AXUIElementGetTypeID() {
    return 50;
}

CFTypeID AXValueGetTypeID() {
    return 51;
}

AXValueRef AXValueCreate(AXValueType type, const void* value) {
    if (type != kAXValueTypeCFRange) {
        standin::refuse("only ranges are made here");
    }
    return standin::reference<AXValueRef>(standin::make<Structure>(*static_cast<const CFRange*>(value)));
}

AXValueType AXValueGetType(AXValueRef value) {
    return standin::as<Structure>(value).structureType();
}

Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* result) {
    const auto& structure = standin::as<Structure>(value);
    if (structure.structureType() != type) {
        return false;
    }
    std::visit(
        [result](const auto& content) { *static_cast<std::remove_cvref_t<decltype(content)>*>(result) = content; },
        structure.content());
    return true;
}
}
