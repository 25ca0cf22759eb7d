// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/dbus/BusMessage.hpp"

#include <new>

namespace quillane {

namespace {

/// Once names have been checked, libdbus reports only a lack of memory this way.
template <typename T>
T* orBadAlloc(T* pointer) {
    if (pointer == nullptr) {
        throw std::bad_alloc();
    }
    return pointer;
}

} // namespace

BusMessage methodCall(const std::string& destination, const std::string& path, const char* interface,
                      const char* member) {
    return BusMessage(orBadAlloc(dbus_message_new_method_call(destination.c_str(), path.c_str(), interface, member)));
}

BusMessage propertyRead(const std::string& destination, const std::string& path, const char* interface,
                        const char* property) {
    auto message = methodCall(destination, path, DBUS_INTERFACE_PROPERTIES, "Get");
    appendText(*message, interface);
    appendText(*message, property);
    return message;
}

void appendText(DBusMessage& message, const std::string& text) {
    DBusMessageIter end;
    const char* value = text.c_str();
    dbus_message_iter_init_append(&message, &end);
    dbus_message_iter_append_basic(&end, DBUS_TYPE_STRING, &value);
}

void appendTexts(DBusMessage& message, std::initializer_list<const char*> array) {
    DBusMessageIter end;
    DBusMessageIter inside;
    dbus_message_iter_init_append(&message, &end);
    dbus_message_iter_open_container(&end, DBUS_TYPE_ARRAY, DBUS_TYPE_STRING_AS_STRING, &inside);
    for (const char* text : array) {
        dbus_message_iter_append_basic(&inside, DBUS_TYPE_STRING, &text);
    }
    dbus_message_iter_close_container(&end, &inside);
}

void appendVariant(DBusMessage& message, bool flag) {
    DBusMessageIter end;
    DBusMessageIter inside;
    const dbus_bool_t value{flag};
    dbus_message_iter_init_append(&message, &end);
    dbus_message_iter_open_container(&end, DBUS_TYPE_VARIANT, DBUS_TYPE_BOOLEAN_AS_STRING, &inside);
    dbus_message_iter_append_basic(&inside, DBUS_TYPE_BOOLEAN, &value);
    dbus_message_iter_close_container(&end, &inside);
}

void appendInt32(DBusMessage& message, std::int32_t number) {
    DBusMessageIter end;
    dbus_message_iter_init_append(&message, &end);
    dbus_message_iter_append_basic(&end, DBUS_TYPE_INT32, &number);
}

void appendUint32(DBusMessage& message, std::uint32_t number) {
    DBusMessageIter end;
    dbus_message_iter_init_append(&message, &end);
    dbus_message_iter_append_basic(&end, DBUS_TYPE_UINT32, &number);
}

bool isBusName(std::string_view text) {
    return dbus_validate_bus_name(std::string(text).c_str(), nullptr) != 0;
}

bool isObjectPath(std::string_view text) {
    return dbus_validate_path(std::string(text).c_str(), nullptr) != 0;
}

BusReader::BusReader(DBusMessage& message) {
    dbus_message_iter_init(&message, &iterator_);
}

bool BusReader::atEnd() const {
    return dbus_message_iter_get_arg_type(&iterator_) == DBUS_TYPE_INVALID;
}

template <typename Value>
std::optional<Value> BusReader::basic(int type) {
    if (dbus_message_iter_get_arg_type(&iterator_) != type) {
        return std::nullopt;
    }
    Value value{};
    dbus_message_iter_get_basic(&iterator_, &value);
    dbus_message_iter_next(&iterator_);
    return value;
}

std::optional<std::string_view> BusReader::text() {
    auto value = basic<const char*>(DBUS_TYPE_STRING);
    if (!value) {
        value = basic<const char*>(DBUS_TYPE_OBJECT_PATH);
    }
    return value;
}

std::optional<std::int32_t> BusReader::int32() {
    return basic<dbus_int32_t>(DBUS_TYPE_INT32);
}

std::optional<std::uint32_t> BusReader::uint32() {
    return basic<dbus_uint32_t>(DBUS_TYPE_UINT32);
}

std::optional<bool> BusReader::flag() {
    const auto value = basic<dbus_bool_t>(DBUS_TYPE_BOOLEAN);
    return value ? std::optional(*value != 0) : std::nullopt;
}

std::optional<BusReader> BusReader::container() {
    switch (dbus_message_iter_get_arg_type(&iterator_)) {
    case DBUS_TYPE_ARRAY:
    case DBUS_TYPE_STRUCT:
    case DBUS_TYPE_DICT_ENTRY:
    case DBUS_TYPE_VARIANT: {
        BusReader inside;
        dbus_message_iter_recurse(&iterator_, &inside.iterator_);
        dbus_message_iter_next(&iterator_);
        return inside;
    }
    default:
        return std::nullopt;
    }
}

void BusReader::skip() {
    dbus_message_iter_next(&iterator_);
}

} // namespace quillane
