// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Accessibility.hpp"
#include "platform/macos/foundation/CFRef.hpp"

#include <ApplicationServices/ApplicationServices.h>

namespace quillane {

/// What an AXElement is here. For the sources of this folder only.
struct MacElement final : AXElement::Handle {
    CFRef<AXUIElementRef> reference;
    pid_t pid;         ///< 0 when the system does not tell
    float timeout = 0; ///< seconds, inherited by elements read from this one; 0 is the system's default

    MacElement(CFRef<AXUIElementRef> element, float seconds);

    /// AXUIElementSetMessagingTimeout.
    void setTimeout(float seconds);

    [[nodiscard]] bool isSame(const Handle& other) const override;
};

[[nodiscard]] MacElement& macElement(const AXElement& element);

/// The element with its time-out in seconds.
[[nodiscard]] AXElement axElement(AXUIElementRef element, float timeout);

/// An object that an application has answered with; elements in it get the time-out in seconds. `std::monostate` for
/// null, for the placeholder of an error and for a list of anything but elements. A value of a type that AXValue does
/// not have is kept as an opaque one.
[[nodiscard]] AXValue axValue(CFTypeRef object, float timeout);

/// The object for a value; null for lists and for no value.
[[nodiscard]] CFRef<CFTypeRef> accessibilityObject(const AXValue& value);

} // namespace quillane
