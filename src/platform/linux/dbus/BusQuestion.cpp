// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/linux/dbus/BusQuestion.hpp"

#include <utility>

namespace quillane {

BusMessage askBus(BusConnection* bus, BusMessage question, std::chrono::milliseconds timeout,
                  std::function<void(DBusMessage&)> late) {
    if (bus == nullptr || bus->isLost()) {
        return nullptr;
    }

    struct Answer {
        bool arrived = false;
        bool givenUp = false;
        BusMessage reply;
        std::function<void(DBusMessage&)> late;
    };

    const auto answer = std::make_shared<Answer>();
    answer->late = std::move(late);
    dbus_message_set_auto_start(question.get(), 0);
    bus->call(
        std::move(question), answer,
        [answer](DBusMessage* reply) { // which keeps its own owner
            answer->arrived = true;
            if (reply != nullptr && !answer->givenUp) {
                answer->reply.reset(dbus_message_ref(reply));
            } else if (reply != nullptr && answer->late) {
                answer->late(*reply);
            }
        },
        BusConnection::Delivery::alsoInWait);
    bus->wait([&] { return answer->arrived; }, BusConnection::Clock::now() + timeout);
    answer->givenUp = true;
    return std::move(answer->reply);
}

} // namespace quillane
