// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

// An application that behaves badly on the accessibility bus. It announces the focus on one of its objects, an editable
// text, and answers questions about it according to its argument:
//
//     accessible_standin well        as it should
//     accessible_standin turns       as it should; after SIGUSR1 as a password field, without telling
//     accessible_standin types       with values of other types
//     accessible_standin names       with references that are not valid names
//     accessible_standin errors      with errors
//     accessible_standin silent      not at all
//     accessible_standin endless     with objects that are their own parents and children
//
// Prints a line when the focus has been announced.

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include <csignal>
#include <sys/prctl.h>

#include <dbus/dbus.h>

namespace {

constexpr auto focusedPath = "/org/a11y/atspi/accessible/1";
constexpr auto rootPath = "/org/a11y/atspi/accessible/root";

volatile std::sig_atomic_t isPassword = 0;

class Answer {
public:
    explicit Answer(DBusMessage* question) : message_(dbus_message_new_method_return(question)) {
        dbus_message_iter_init_append(message_, &end_);
    }

    void number(std::uint32_t value) { dbus_message_iter_append_basic(&end_, DBUS_TYPE_UINT32, &value); }

    void text(const char* value) { dbus_message_iter_append_basic(&end_, DBUS_TYPE_STRING, &value); }

    void numbers(std::uint32_t first, std::uint32_t second) {
        DBusMessageIter array;
        dbus_message_iter_open_container(&end_, DBUS_TYPE_ARRAY, "u", &array);
        dbus_message_iter_append_basic(&array, DBUS_TYPE_UINT32, &first);
        dbus_message_iter_append_basic(&array, DBUS_TYPE_UINT32, &second);
        dbus_message_iter_close_container(&end_, &array);
    }

    void texts(const char* value) {
        DBusMessageIter array;
        dbus_message_iter_open_container(&end_, DBUS_TYPE_ARRAY, "s", &array);
        dbus_message_iter_append_basic(&array, DBUS_TYPE_STRING, &value);
        dbus_message_iter_close_container(&end_, &array);
    }

    void references(const char* bus, const char* path, int count) {
        DBusMessageIter array;
        dbus_message_iter_open_container(&end_, DBUS_TYPE_ARRAY, "(so)", &array);
        for (int i = 0; i < count; ++i) {
            reference(array, bus, path);
        }
        dbus_message_iter_close_container(&end_, &array);
    }

    void variantReference(const char* bus, const char* path) {
        DBusMessageIter variant;
        dbus_message_iter_open_container(&end_, DBUS_TYPE_VARIANT, "(so)", &variant);
        reference(variant, bus, path);
        dbus_message_iter_close_container(&end_, &variant);
    }

    void variantText(const char* value) {
        DBusMessageIter variant;
        dbus_message_iter_open_container(&end_, DBUS_TYPE_VARIANT, "s", &variant);
        dbus_message_iter_append_basic(&variant, DBUS_TYPE_STRING, &value);
        dbus_message_iter_close_container(&end_, &variant);
    }

    DBusMessage* take() { return message_; }

private:
    static void reference(DBusMessageIter& into, const char* bus, const char* path) {
        DBusMessageIter structure;
        dbus_message_iter_open_container(&into, DBUS_TYPE_STRUCT, nullptr, &structure);
        dbus_message_iter_append_basic(&structure, DBUS_TYPE_STRING, &bus);
        dbus_message_iter_append_basic(&structure, DBUS_TYPE_OBJECT_PATH, &path);
        dbus_message_iter_close_container(&into, &structure);
    }

    DBusMessage* message_;
    DBusMessageIter end_{};
};

DBusMessage* wellBehaved(DBusMessage* question, const char* ownName, bool endless) {
    const std::string member = dbus_message_get_member(question);
    const char* property = "";
    const char* interface = "";
    dbus_message_get_args(question, nullptr, DBUS_TYPE_STRING, &interface, DBUS_TYPE_STRING, &property,
                          DBUS_TYPE_INVALID);
    const bool isRoot = dbus_message_has_path(question, rootPath) != 0;
    Answer answer(question);
    if (member == "GetRole") {
        answer.number(isRoot ? 75 : isPassword != 0 ? 40 : 61);
    } else if (member == "GetState") {
        // active, editable, enabled, focused, sensitive, showing; with "endless", nothing has the focus
        answer.numbers(1U << 1 | 1U << 7 | 1U << 8 | (endless ? 0U : 1U << 12) | 1U << 24 | 1U << 25, 0);
    } else if (member == "GetInterfaces") {
        answer.texts("org.a11y.atspi.EditableText");
    } else if (member == "GetChildren") {
        answer.references(ownName, endless ? dbus_message_get_path(question) : focusedPath, isRoot || endless ? 20 : 0);
    } else if (std::strcmp(property, "Parent") == 0) {
        answer.variantReference(ownName, endless ? dbus_message_get_path(question) : rootPath);
    } else {
        answer.variantText("name");
    }
    return answer.take();
}

DBusMessage* wrongTypes(DBusMessage* question) {
    const std::string member = dbus_message_get_member(question);
    Answer answer(question);
    if (member == "GetRole") {
        answer.text("text");
    } else if (member == "GetState") {
        answer.number(4711);
    } else if (member == "GetInterfaces" || member == "GetChildren") {
        answer.numbers(1, 2);
    } else if (member == "Get") {
        answer.numbers(3, 4);
    }
    return answer.take();
}

DBusMessage* wrongNames(DBusMessage* question, const char* ownName) {
    const std::string member = dbus_message_get_member(question);
    if (member == "GetChildren" && dbus_message_has_path(question, rootPath) == 0) {
        Answer answer(question);
        answer.references("no name at all", focusedPath, 3);
        return answer.take();
    }
    if (member == "Get") {
        Answer answer(question);
        answer.variantReference("", focusedPath);
        return answer.take();
    }
    return wellBehaved(question, ownName, false);
}

DBusConnection* connect() {
    auto* session = dbus_bus_get(DBUS_BUS_SESSION, nullptr);
    if (session == nullptr) {
        return nullptr;
    }
    auto* question = dbus_message_new_method_call("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress");
    auto* reply = dbus_connection_send_with_reply_and_block(session, question, 5000, nullptr);
    const char* address = nullptr;
    if (reply == nullptr || dbus_message_get_args(reply, nullptr, DBUS_TYPE_STRING, &address, DBUS_TYPE_INVALID) == 0) {
        return nullptr;
    }
    auto* bus = dbus_connection_open(address, nullptr);
    return bus != nullptr && dbus_bus_register(bus, nullptr) != 0 ? bus : nullptr;
}

void announceFocus(DBusConnection* bus) {
    auto* signal = dbus_message_new_signal(focusedPath, "org.a11y.atspi.Event.Object", "StateChanged");
    const char* state = "focused";
    const std::int32_t gained = 1;
    const std::int32_t nothing = 0;
    dbus_message_append_args(signal, DBUS_TYPE_STRING, &state, DBUS_TYPE_INT32, &gained, DBUS_TYPE_INT32, &nothing,
                             DBUS_TYPE_INVALID);
    dbus_connection_send(bus, signal, nullptr);
    dbus_connection_flush(bus);
}

} // namespace

int main(int count, char** arguments) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::string mode = count == 2 ? arguments[1] : "";
    auto* bus = mode.empty() ? nullptr : connect();
    if (bus == nullptr) {
        return 1;
    }
    std::signal(SIGUSR1, [](int) { isPassword = 1; });
    announceFocus(bus);
    std::puts("told");
    std::fflush(stdout);
    while (dbus_connection_read_write(bus, -1) != 0) {
        while (auto* message = dbus_connection_pop_message(bus)) {
            if (dbus_message_get_type(message) != DBUS_MESSAGE_TYPE_METHOD_CALL || mode == "silent") {
                continue;
            }
            auto* answer = mode == "types"    ? wrongTypes(message)
                           : mode == "names"  ? wrongNames(message, dbus_bus_get_unique_name(bus))
                           : mode == "errors" ? dbus_message_new_error(message, DBUS_ERROR_FAILED, "no")
                                              : wellBehaved(message, dbus_bus_get_unique_name(bus), mode == "endless");
            dbus_connection_send(bus, answer, nullptr);
        }
        dbus_connection_flush(bus);
    }
    return 0;
}
