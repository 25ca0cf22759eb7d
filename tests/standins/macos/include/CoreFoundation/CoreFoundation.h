// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

// What the backend calls of Core Foundation, after the documentation page of each function named
// (developer.apple.com/documentation/corefoundation).

#include "CoreFoundation/Base.h"
#include "CoreFoundation/Collections.h"
#include "CoreFoundation/NotificationCenter.h"
#include "CoreFoundation/Numbers.h"
#include "CoreFoundation/RunLoop.h"
#include "CoreFoundation/Strings.h"
