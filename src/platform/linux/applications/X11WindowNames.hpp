// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <xcb/xcb.h>

namespace quillane {

/// WM_CLASS in UTF-8 (ICCCM 4.1.2.5); empty where a window has none.
struct WindowNames {
    std::string instance;
    std::string windowClass;
};

/// From the property: two strings in Latin-1, each terminated by NUL. Empty unless it is that.
[[nodiscard]] WindowNames windowNames(const xcb_get_property_reply_t* reply);

} // namespace quillane
