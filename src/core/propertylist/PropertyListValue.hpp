// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/support/Shared.hpp"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace quillane::core {

/// A value of a property list (Apple, "Property List Programming Guide"). Dates are seconds since 2001-01-01 UTC.
class PropertyListValue {
public:
    using Data = Shared<std::vector<std::byte>>; ///< it may be large
    using Array = std::vector<PropertyListValue>;
    using Dictionary = std::map<std::string, PropertyListValue>;

    struct Date {
        double secondsSinceReferenceDate = 0;
        bool operator==(const Date&) const = default;
    };

    using Storage = std::variant<bool, std::int64_t, double, std::string, Data, Date, Array, Dictionary>;

    PropertyListValue() : storage_(Dictionary{}) {}

    template <typename T>

    requires std::constructible_from<Storage, T> &&
        (!std::same_as<std::remove_cvref_t<T>, PropertyListValue>)PropertyListValue(T&& value)
        : storage_(std::forward<T>(value)) {} // NOLINT(google-explicit-constructor)

    PropertyListValue(const char* text) : storage_(std::string(text)) {} // NOLINT(google-explicit-constructor)

    /// The value if it is exactly of type T, else nullptr: a Boolean is never read as a number nor the other way round.
    template <typename T>
    [[nodiscard]] const T* as() const {
        return std::get_if<T>(&storage_);
    }

    [[nodiscard]] const Storage& storage() const { return storage_; }

    bool operator==(const PropertyListValue&) const = default;

private:
    Storage storage_;
};

} // namespace quillane::core
