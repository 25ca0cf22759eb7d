// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/linux/accessibility/OwnFocus.hpp"

#include <QAccessible>
#include <QGuiApplication>

#include <utility>

namespace quillane {

namespace {

/// The widget's address: compared with that of the focused widget, never dereferenced.
std::string pathOf(const QObject* widget) {
    return "/focus/" + std::to_string(reinterpret_cast<std::uintptr_t>(widget));
}

std::uint32_t roleOf(const QAccessibleInterface& widget, const QAccessible::State& state) {
    switch (widget.role()) {
    case QAccessible::EditableText:
        return state.passwordEdit != 0 ? 40 : 61; // password text, text
    case QAccessible::SpinBox:
        return 52;
    case QAccessible::ComboBox:
        return 11;
    case QAccessible::Button:
        return 43;
    case QAccessible::CheckBox:
        return 7;
    default:
        return 67; // unknown
    }
}

} // namespace

std::optional<AtspiObject> ownFocusedObject() {
    const auto* widget = QGuiApplication::focusObject();
    return widget != nullptr ? std::optional(AtspiObject{{}, pathOf(widget)}) : std::nullopt;
}

AtspiObject ownApplication() {
    return {{}, atspiRootPath};
}

std::shared_ptr<AtspiFacts> ownFacts(const AtspiObject& object) {
    auto facts = std::make_shared<AtspiFacts>(); // shared like those from the bus
    if (object == ownApplication()) {
        facts->role = 75;
        return facts;
    }
    auto* widget = QGuiApplication::focusObject();
    auto* interface =
        widget != nullptr && object == ownFocusedObject() ? QAccessible::queryAccessibleInterface(widget) : nullptr;
    if (interface == nullptr || !interface->isValid()) {
        return nullptr;
    }
    const auto state = interface->state();
    const auto set = [&](AtspiState one, bool on) {
        facts->states |= on ? std::uint64_t{1} << static_cast<unsigned>(one) : 0;
    };
    set(AtspiState::focused, true);
    set(AtspiState::enabled, state.disabled == 0);
    set(AtspiState::sensitive, state.disabled == 0);
    set(AtspiState::editable, state.editable != 0 && state.readOnly == 0);
    set(AtspiState::readOnly, state.readOnly != 0);
    set(AtspiState::multiLine, state.multiLine != 0);
    if (interface->textInterface() != nullptr) {
        facts->interfaces |= static_cast<unsigned>(AtspiInterface::text);
    }
    facts->role = roleOf(*interface, state);
    facts->name = interface->text(QAccessible::Name).toStdString();
    facts->description = interface->text(QAccessible::Description).toStdString();
    facts->parent = ownApplication();
    return facts;
}

} // namespace quillane
