// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/accessibility/AtspiFacts.hpp"

#include <array>

namespace quillane {

namespace {

constexpr auto accessible = "org.a11y.atspi.Accessible";
constexpr auto action = "org.a11y.atspi.Action";
constexpr auto document = "org.a11y.atspi.Document";
constexpr auto text = "org.a11y.atspi.Text";
constexpr std::string_view nullPath = "/org/a11y/atspi/null";
constexpr std::size_t maximumChildren = 10'000; // of one object; a hostile application could name millions

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
    while (references && !references->atEnd() && facts.children.size() < maximumChildren) {
        if (auto child = readReference(*references)) {
            facts.children.push_back(std::move(*child));
        }
    }
}

template <std::int32_t AtspiFacts::*Field>
void readCount(BusReader& reply, AtspiFacts& facts) {
    auto variant = reply.container();
    facts.*Field = variant ? variant->int32().value_or(-1) : -1;
}

void readSelectionCount(BusReader& reply, AtspiFacts& facts) {
    facts.selectionCount = reply.int32().value_or(0);
}

void readSelection(BusReader& reply, AtspiFacts& facts) {
    facts.selectionStart = reply.int32().value_or(0);
    facts.selectionEnd = reply.int32().value_or(0);
}

template <std::size_t Index>
void readActionName(BusReader& reply, AtspiFacts& facts) {
    facts.actions[Index] = std::string(reply.text().value_or(""));
}

void readAddress(BusReader& reply, AtspiFacts& facts) {
    auto entries = reply.container();
    while (auto entry = entries ? entries->container() : std::nullopt) {
        const auto key = entry->text();
        const auto value = entry->text();
        if (value && (key == "DocURL" || key == "URI")) {
            facts.address = std::string(*value);
        }
    }
}

void readNothing(BusReader& /*reply*/, AtspiFacts& /*facts*/) {}

/// How each fact is requested and read: a property of an interface, or a method, which may take one number.
struct Question {
    AtspiFact fact;
    const char* interface;
    const char* method;   ///< nullptr for a property
    const char* property; ///< nullptr for a method
    void (*read)(BusReader& reply, AtspiFacts& facts);
    int argument = -1; ///< negative for none
};

constexpr std::array questions{
    Question{AtspiFact::role, accessible, "GetRole", nullptr, readRole},
    Question{AtspiFact::states, accessible, "GetState", nullptr, readStates},
    Question{AtspiFact::interfaces, accessible, "GetInterfaces", nullptr, readInterfaces},
    Question{AtspiFact::name, accessible, nullptr, "Name", readText<&AtspiFacts::name>},
    Question{AtspiFact::description, accessible, nullptr, "Description", readText<&AtspiFacts::description>},
    Question{AtspiFact::identifier, accessible, nullptr, "AccessibleId", readText<&AtspiFacts::identifier>},
    Question{AtspiFact::parent, accessible, nullptr, "Parent", readParent},
    Question{AtspiFact::children, accessible, "GetChildren", nullptr, readChildren},
    Question{AtspiFact::caret, text, nullptr, "CaretOffset", readCount<&AtspiFacts::caret>},
    Question{AtspiFact::characterCount, text, nullptr, "CharacterCount", readCount<&AtspiFacts::characterCount>},
    Question{AtspiFact::selectionCount, text, "GetNSelections", nullptr, readSelectionCount},
    Question{AtspiFact::selection, text, "GetSelection", nullptr, readSelection, 0},
    Question{atspiActionName(0), action, "GetName", nullptr, readActionName<0>, 0},
    Question{atspiActionName(1), action, "GetName", nullptr, readActionName<1>, 1},
    Question{atspiActionName(2), action, "GetName", nullptr, readActionName<2>, 2},
    Question{atspiActionName(3), action, "GetName", nullptr, readActionName<3>, 3},
    Question{atspiActionName(4), action, "GetName", nullptr, readActionName<4>, 4},
    Question{atspiActionName(5), action, "GetName", nullptr, readActionName<5>, 5},
    Question{AtspiFact::extras, accessible, "GetAttributes", nullptr, readNothing},
    Question{AtspiFact::address, document, "GetAttributes", nullptr, readAddress},
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

void readAnswer(AtspiFact fact, DBusMessage& answer, AtspiFacts& facts) {
    for (const auto& question : questions) {
        if (question.fact == fact) {
            BusReader reader(answer);
            question.read(reader, facts);
        }
    }
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
                           ? methodCall(object.bus, object.path, question.interface, question.method)
                           : propertyRead(object.bus, object.path, question.interface, question.property);
        if (question.argument >= 0) {
            appendInt32(*message, question.argument);
        }
        dbus_message_set_auto_start(message.get(), 0);
        bus.call(
            std::move(message), facts,
            [weak = std::weak_ptr(facts), bit, onAnswer](DBusMessage* reply) {
                const auto target = weak.lock();
                if (!target) {
                    return;
                }
                target->answered |= bit;
                if (reply != nullptr) {
                    readAnswer(static_cast<AtspiFact>(bit), *reply, *target);
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
