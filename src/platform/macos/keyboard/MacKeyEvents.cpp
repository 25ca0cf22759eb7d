// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#include "platform/macos/keyboard/MacKeyEvents.hpp"

#include "platform/macos/foundation/CFRef.hpp"

#include <ApplicationServices/ApplicationServices.h>

namespace quillane {

core::EventFlags MacKeyEvents::currentFlags() const {
    return CGEventSourceFlagsState(kCGEventSourceStateCombinedSessionState);
}

bool MacKeyEvents::isKeyDown(core::KeyCode keyCode) const {
    return CGEventSourceKeyState(kCGEventSourceStateCombinedSessionState, keyCode);
}

bool MacKeyEvents::postKey(pid_t pid, core::KeyCode keyCode, core::EventFlags flags) {
    const auto press = CFRef<CGEventRef>::adopt(CGEventCreateKeyboardEvent(nullptr, keyCode, true));
    const auto release = CFRef<CGEventRef>::adopt(CGEventCreateKeyboardEvent(nullptr, keyCode, false));
    if (!press || !release) {
        return false;
    }
    for (CGEventRef event : {press.get(), release.get()}) {
        CGEventSetFlags(event, flags);
        CGEventPostToPid(pid, event);
    }
    return true;
}

} // namespace quillane
