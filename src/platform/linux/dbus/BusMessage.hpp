// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <dbus/dbus.h>

namespace quillane {

struct BusMessageUnref {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};

/// A D-Bus message.
using BusMessage = std::unique_ptr<DBusMessage, BusMessageUnref>;

/// A call of a method. The names must be valid: check names from others with `isBusName` and `isObjectPath` first.
[[nodiscard]] BusMessage methodCall(const std::string& destination, const std::string& path, const char* interface,
                                    const char* member);

/// A call that reads a property (org.freedesktop.DBus.Properties, D-Bus Specification).
[[nodiscard]] BusMessage propertyRead(const std::string& destination, const std::string& path, const char* interface,
                                      const char* property);

/// Adds arguments at the end of a message.
void appendText(DBusMessage& message, const std::string& text);
void appendTexts(DBusMessage& message, std::initializer_list<const char*> array);
void appendVariant(DBusMessage& message, bool flag);
void appendInt32(DBusMessage& message, std::int32_t number);
void appendUint32(DBusMessage& message, std::uint32_t number);

[[nodiscard]] bool isBusName(std::string_view text);
[[nodiscard]] bool isObjectPath(std::string_view text);

/// Reads the arguments of a message in order. An argument of another type than requested is absent and is not skipped.
/// Texts live as long as the message.
class BusReader {
public:
    explicit BusReader(DBusMessage& message);

    [[nodiscard]] bool atEnd() const;

    /// A string or an object path.
    std::optional<std::string_view> text();
    std::optional<std::int32_t> int32();
    std::optional<std::uint32_t> uint32();
    std::optional<bool> flag();

    /// The contents of an array, a structure, a dictionary entry or a variant.
    std::optional<BusReader> container();

    void skip();

private:
    BusReader() = default;

    template <typename Value>
    std::optional<Value> basic(int type);

    mutable DBusMessageIter iterator_{};
};

} // namespace quillane
