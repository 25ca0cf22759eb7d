// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

// Keyboard layouts of the Unicode Utilities ("Unicode Utilities Reference").

#include "CoreFoundation/CoreFoundation.h"

using UInt16 = std::uint16_t;

struct UCKeyboardLayout;

constexpr UInt16 kUCKeyActionDown = 0;

extern "C" {
UInt8 LMGetKbdType();
/// `modifiers` are those of an event record divided by 256. A dead key types nothing and sets the state, which the next
/// key takes.
OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 keyCode, UInt16 action, UInt32 modifiers,
                        UInt32 keyboardType, UInt32 options, UInt32* deadKeyState, UniCharCount maximumLength,
                        UniCharCount* length, UniChar* text);
}
