// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quillane::core {

/// A virtual key code of macOS (Carbon HIToolbox, Events.h): the place of a key on an ANSI keyboard.
using KeyCode = std::uint16_t;

/// Raw Quartz event flags: device-independent bits (Quartz CGEventTypes.h) and below them the device-dependent ones
/// that distinguish left from right (IOKit IOLLEvent.h).
using EventFlags = std::uint64_t;

namespace flags {

inline constexpr EventFlags leftControl = 0x1;
inline constexpr EventFlags leftShift = 0x2;
inline constexpr EventFlags rightShift = 0x4;
inline constexpr EventFlags leftCommand = 0x8;
inline constexpr EventFlags rightCommand = 0x10;
inline constexpr EventFlags leftOption = 0x20;
inline constexpr EventFlags rightOption = 0x40;
inline constexpr EventFlags rightControl = 0x2000;

inline constexpr EventFlags capsLock = 0x10000;
inline constexpr EventFlags shift = 0x20000;
inline constexpr EventFlags control = 0x40000;
inline constexpr EventFlags option = 0x80000;
inline constexpr EventFlags command = 0x100000;
inline constexpr EventFlags secondaryFn = 0x800000;

} // namespace flags

} // namespace quillane::core
