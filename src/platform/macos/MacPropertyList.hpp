// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/PropertyListValue.hpp"

#import <Foundation/Foundation.h>

#include <optional>

namespace quillane {

/// The value of a property list object; none for an object that no property list can hold. A Boolean is told from a
/// number by its type (CFBooleanGetTypeID).
[[nodiscard]] std::optional<core::PropertyListValue> propertyListValue(id object);

/// The value as an object; dates by -[NSDate dateWithTimeIntervalSinceReferenceDate:].
[[nodiscard]] id propertyListObject(const core::PropertyListValue& value);

} // namespace quillane
