// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT

#include "platform/macos/keyboard/MacSecureInput.hpp"

#include <Carbon/Carbon.h>

namespace quillane {

bool MacSecureInput::isEnabled() {
    return IsSecureEventInputEnabled();
}

} // namespace quillane
