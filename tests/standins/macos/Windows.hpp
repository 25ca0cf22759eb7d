// SPDX-FileCopyrightText: The Quillane authors
// SPDX-License-Identifier: MIT
#pragma once

#include "standins/macos/Values.hpp"

#include <CoreGraphics/CoreGraphics.h>

#include <vector>

namespace quillane::standin {

/// The windows on the screen, from front to back.
class WindowServer {
public:
    /// An entry as the window server gives it. A part that a test leaves out is missing.
    [[nodiscard]] static Value entry(int pid, int layer, CGRect bounds);

    std::vector<Value> windows;
    bool isAnswering = true;

    void settle() { windows.clear(); }
};

} // namespace quillane::standin
