// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "clipboard/panel/PanelKeyEvents.hpp"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace quillane::panelKeyEvents {

namespace {

constexpr core::KeyCode returnKey = 36;
constexpr core::KeyCode keypadEnter = 76;
constexpr core::KeyCode deleteKey = 51;
constexpr core::KeyCode forwardDelete = 117;
constexpr core::KeyCode escape = 53;
constexpr core::KeyCode down = 125;
constexpr core::KeyCode up = 126;
constexpr std::array<core::KeyCode, 9> digits{18, 19, 20, 21, 23, 22, 26, 28, 25}; // 1 to 9

/// Key codes of the X server, which are those of the Linux kernel (input-event-codes.h) and 8.
constexpr quint32 scanCodeOfV = 55;
constexpr quint32 scanCodeOfOne = 10; // those of 2 to 9 follow

constexpr core::KeyCode keyCodeOfV = 9;

/// The position of a key in the digit row, from 0.
std::optional<std::size_t> digitByPlace(const QKeyEvent& event, KeyNumbering numbering) {
    if (numbering == KeyNumbering::macOS) {
        const auto* const place = std::ranges::find(digits, event.nativeVirtualKey());
        return place != digits.end() ? std::optional<std::size_t>(place - digits.begin()) : std::nullopt;
    }
    const auto scanCode = event.nativeScanCode();
    return scanCode >= scanCodeOfOne && scanCode < scanCodeOfOne + digits.size()
               ? std::optional<std::size_t>(scanCode - scanCodeOfOne)
               : std::nullopt;
}

/// The index of a digit key, from 0. macOS numbers keys by position only; on X11 a digit on the key takes precedence.
std::optional<std::size_t> digit(const QKeyEvent& event, KeyNumbering numbering) {
    const auto key = static_cast<quint32>(event.key());
    const int written = key < 0x10000 ? QChar(static_cast<char16_t>(key)).digitValue() : -1;
    const auto place = digitByPlace(event, numbering);
    if (place && (written < 0 || numbering == KeyNumbering::macOS)) {
        return place;
    }
    return written >= 1 && written <= 9 ? std::optional<std::size_t>(written - 1) : std::nullopt;
}

} // namespace

std::optional<core::KeyCode> keyCode(const QKeyEvent& event, KeyNumbering numbering) {
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
    if (const auto index = digit(event, numbering)) {
        return digits.at(*index);
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

bool isHotKey(const QKeyEvent& event, KeyNumbering numbering) {
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier & ~Qt::GroupSwitchModifier;
    if (numbering == KeyNumbering::macOS) {
        return modifiers == (Qt::ControlModifier | Qt::ShiftModifier) && event.nativeVirtualKey() == keyCodeOfV;
    }
    return modifiers == (Qt::MetaModifier | Qt::ShiftModifier) &&
           (event.key() == Qt::Key_V || event.nativeScanCode() == scanCodeOfV);
}

} // namespace quillane::panelKeyEvents
