// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/AtspiFacts.hpp"

#include <array>

namespace quillane {

namespace {

constexpr auto accessible = "org.a11y.atspi.Accessible";
constexpr std::string_view nullPath = "/org/a11y/atspi/null";
constexpr std::size_t mostChildren = 10'000; // of one object; a hostile application could name millions

void readRole(BusReader& reply, AtspiFacts& facts) {
    facts.role = reply.uint32().value_or(0);
}

void readStates(BusReader& reply, AtspiFacts& facts) {
    if (auto words = reply.container()) {
        const auto low = words->uint32();
        const auto high = words->uint32();
        facts.states = std::uint64_t{high.value_or(0)} << 32 | low.value_or(0);
    }
}

void readInterfaces(BusReader& reply, AtspiFacts& facts) {
    auto names = reply.container();
    while (const auto name = names ? names->text() : std::nullopt) {
        if (*name == "org.a11y.atspi.Text") {
            facts.interfaces |= static_cast<unsigned>(AtspiInterface::text);
        } else if (*name == "org.a11y.atspi.EditableText") {
            facts.interfaces |= static_cast<unsigned>(AtspiInterface::editableText);
        }
    }
}

template <std::string AtspiFacts::*Field>
void readText(BusReader& reply, AtspiFacts& facts) {
    auto variant = reply.container();
    facts.*Field = variant ? variant->text().value_or("") : "";
}

void readParent(BusReader& reply, AtspiFacts& facts) {
    if (auto variant = reply.container()) {
        facts.parent = readReference(*variant);
    }
}

void readChildren(BusReader& reply, AtspiFacts& facts) {
    auto references = reply.container();
    while (references && !references->atEnd() && facts.children.size() < mostChildren) {
        if (auto child = readReference(*references)) {
            facts.children.push_back(std::move(*child));
        }
    }
}

/// How each fact is asked for and read (org.a11y.atspi.Accessible).
struct Question {
    AtspiFact fact;
    const char* method;   ///< nullptr for a property
    const char* property; ///< nullptr for a method
    void (*read)(BusReader& reply, AtspiFacts& facts);
};

constexpr std::array questions{
    Question{AtspiFact::role, "GetRole", nullptr, readRole},
    Question{AtspiFact::states, "GetState", nullptr, readStates},
    Question{AtspiFact::interfaces, "GetInterfaces", nullptr, readInterfaces},
    Question{AtspiFact::name, nullptr, "Name", readText<&AtspiFacts::name>},
    Question{AtspiFact::description, nullptr, "Description", readText<&AtspiFacts::description>},
    Question{AtspiFact::identifier, nullptr, "AccessibleId", readText<&AtspiFacts::identifier>},
    Question{AtspiFact::parent, nullptr, "Parent", readParent},
    Question{AtspiFact::children, "GetChildren", nullptr, readChildren},
};

} // namespace

std::optional<AtspiObject> readReference(BusReader& reader) {
    auto inside = reader.container();
    if (!inside) {
        reader.skip();
        return std::nullopt;
    }
    const auto bus = inside->text();
    const auto path = inside->text();
    if (!bus || !path || *path == nullPath || !isBusName(*bus) || !isObjectPath(*path)) {
        return std::nullopt;
    }
    return AtspiObject{std::string(*bus), std::string(*path)};
}

std::shared_ptr<AtspiFacts> requestFacts(BusConnection& bus, const AtspiObject& object, AtspiFactSet which,
                                         std::function<void()> onAnswer) {
    auto facts = std::make_shared<AtspiFacts>(); // shared with answers that may come too late
    facts->asked = which;
    for (const auto& question : questions) {
        const auto bit = static_cast<unsigned>(question.fact);
        if ((which & bit) == 0) {
            continue;
        }
        auto message = question.method != nullptr
                           ? methodCall(object.bus, object.path, accessible, question.method)
                           : propertyRead(object.bus, object.path, accessible, question.property);
        dbus_message_set_auto_start(message.get(), 0);
        bus.call(
            std::move(message), facts,
            [weak = std::weak_ptr(facts), bit, read = question.read, onAnswer](DBusMessage* reply) {
                const auto target = weak.lock();
                if (!target) {
                    return;
                }
                target->answered |= bit;
                if (reply != nullptr) {
                    BusReader reader(*reply);
                    read(reader, *target);
                } else {
                    target->refused |= bit;
                }
                if (onAnswer) {
                    onAnswer();
                }
            },
            BusConnection::Delivery::alsoInWait);
    }
    return facts;
}

} // namespace quillane
