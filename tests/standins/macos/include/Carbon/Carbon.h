// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Carbon/HotKeys.h"
#include "Carbon/InputSources.h"
#include "Carbon/KeyLayouts.h"

extern "C" {
/// Whether a program has turned secure keyboard input on (Technical Note TN2150).
Boolean IsSecureEventInputEnabled();
}
