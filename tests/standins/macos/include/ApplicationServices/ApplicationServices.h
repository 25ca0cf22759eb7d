// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "ApplicationServices/Accessibility.h"
#include "ApplicationServices/Events.h"
#include "CoreFoundation/CoreFoundation.h"
#include "CoreGraphics/CoreGraphics.h"

extern "C" {
/// Launch Services: opens an address with the application for its scheme.
OSStatus LSOpenCFURLRef(CFURLRef address, CFURLRef* launched);
}
