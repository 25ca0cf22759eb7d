// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "core/propertylist/PropertyListValue.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillane::core {

/// Typed settings under string keys. Main thread. A missing or mistyped value is absent, never an error, and writing
/// never fails for the caller: a store that cannot write keeps its values in memory.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// The stored value, or none.
    [[nodiscard]] virtual std::optional<PropertyListValue> object(std::string_view key) const = 0;

    /// Stores the value durably: it survives a kill right after the call.
    virtual void setObject(std::string_view key, PropertyListValue value) = 0;

    /// Stores several values in one write.
    virtual void setObjects(const PropertyListValue::Dictionary& values) = 0;

    virtual void removeObject(std::string_view key) = 0;

    /// Stores a value that need not survive a kill, such as a status line: a store that writes to the disk at once may
    /// keep it in memory until the next change, or until it is destroyed.
    virtual void note(std::string_view key, PropertyListValue value) { setObject(key, std::move(value)); }

    [[nodiscard]] std::optional<bool> boolean(std::string_view key) const { return typed<bool>(key); }

    [[nodiscard]] std::optional<std::string> string(std::string_view key) const { return typed<std::string>(key); }

    [[nodiscard]] std::optional<PropertyListValue::Data> data(std::string_view key) const {
        return typed<PropertyListValue::Data>(key);
    }

    /// The array of strings under the key; absent when any element is not a string.
    [[nodiscard]] std::optional<std::vector<std::string>> stringArray(std::string_view key) const;

private:
    template <typename T>
    [[nodiscard]] std::optional<T> typed(std::string_view key) const {
        const auto value = object(key);
        const T* exact = value ? value->as<T>() : nullptr;
        return exact ? std::optional<T>(*exact) : std::nullopt;
    }
};

} // namespace quillane::core
