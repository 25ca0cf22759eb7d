// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

// The header of libxcb-xkb names a field `explicit`, which C++ does not allow.
#define explicit explicitMask
#include <xcb/xkb.h>
#undef explicit
