// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/propertylist/PropertyListValue.hpp"
#include "platform/macos/foundation/CFRef.hpp"

#include <optional>

namespace quillane {

/// The value of a property list object; none for null and for an object that no property list can hold. A Boolean is
/// told from a number by its type (CFBooleanGetTypeID). A whole number beyond 64 signed bits becomes a floating one.
[[nodiscard]] std::optional<core::PropertyListValue> propertyListValue(CFTypeRef object);

/// The value as an object, never null; dates by CFDateCreate.
[[nodiscard]] CFRef<CFTypeRef> propertyListObject(const core::PropertyListValue& value);

} // namespace quillane
