// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/PanelKeyEvents.hpp"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace quillane::PanelKeyEvents {

namespace {

constexpr core::KeyCode returnKey = 36;
constexpr core::KeyCode keypadEnter = 76;
constexpr core::KeyCode deleteKey = 51;
constexpr core::KeyCode forwardDelete = 117;
constexpr core::KeyCode escape = 53;
constexpr core::KeyCode down = 125;
constexpr core::KeyCode up = 126;
constexpr std::array<core::KeyCode, 9> digits{18, 19, 20, 21, 23, 22, 26, 28, 25}; // 1 to 9

/// Key codes of the X server, which are those of the Linux kernel (input-event-codes.h) and 8. On other desktops Qt has
/// no such number.
constexpr quint32 scanCodeOfV = 55;
constexpr quint32 scanCodeOfOne = 10; // those of 2 to 9 follow

std::optional<std::size_t> digit(const QKeyEvent& event) {
    const auto key = static_cast<quint32>(event.key());
    const int value = key < 0x10000 ? QChar(static_cast<char16_t>(key)).digitValue() : -1;
    if (value >= 1 && value <= 9) {
        return static_cast<std::size_t>(value);
    }
    const auto scanCode = event.nativeScanCode();
    if (value < 0 && scanCode >= scanCodeOfOne && scanCode < scanCodeOfOne + digits.size()) {
        return scanCode - scanCodeOfOne + 1; // layouts that have other signs there
    }
    return std::nullopt;
}

} // namespace

std::optional<core::KeyCode> keyCode(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Return:
        return returnKey;
    case Qt::Key_Enter:
        return keypadEnter;
    case Qt::Key_Backspace:
        return deleteKey;
    case Qt::Key_Delete:
        return forwardDelete;
    case Qt::Key_Escape:
        return escape;
    case Qt::Key_Up:
        return up;
    case Qt::Key_Down:
        return down;
    default:
        break;
    }
    if (const auto number = digit(event)) {
        return digits.at(*number - 1);
    }
    return std::nullopt;
}

core::EventFlags flags(const QKeyEvent& event) {
    core::EventFlags held = 0;
    const auto modifiers = event.modifiers();
    held |= modifiers.testFlag(Qt::ShiftModifier) ? core::flags::shift : 0;
    held |= modifiers.testFlag(Qt::ControlModifier) ? core::flags::command : 0;
    held |= modifiers.testFlag(Qt::AltModifier) ? core::flags::option : 0;
    held |= modifiers.testFlag(Qt::MetaModifier) ? core::flags::control : 0;
    return held;
}

bool isHotKey(const QKeyEvent& event) {
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier & ~Qt::GroupSwitchModifier;
    return modifiers == (Qt::MetaModifier | Qt::ShiftModifier) &&
           (event.key() == Qt::Key_V || event.nativeScanCode() == scanCodeOfV);
}

} // namespace quillane::PanelKeyEvents
