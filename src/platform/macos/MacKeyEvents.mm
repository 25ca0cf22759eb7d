// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/MacKeyEvents.hpp"

#import <ApplicationServices/ApplicationServices.h>

namespace quillane {

core::EventFlags MacKeyEvents::currentFlags() const {
    return CGEventSourceFlagsState(kCGEventSourceStateCombinedSessionState);
}

} // namespace quillane
